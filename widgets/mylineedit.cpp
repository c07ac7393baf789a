#include "widgets/mylineedit.h"

#include "widgets/touch.h"

MyLineEdit::MyLineEdit(QWidget *parent) : QLineEdit(parent) {}

// A layout that leaves the height open makes room for a finger.
QSize MyLineEdit::sizeHint() const
{
    return QLineEdit::sizeHint().expandedTo(QSize(0, panelkit::fingerHeight));
}

void MyLineEdit::focusInEvent(QFocusEvent *)
{
    Q_EMIT focusIn();
}

void MyLineEdit::focusOutEvent(QFocusEvent *)
{
    Q_EMIT focusOut();
}
