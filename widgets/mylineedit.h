// A line edit that announces focus changes instead of acting on them.
#pragma once

#include "platform/export.h"

#include <QLineEdit>

// The toolkit's own handling of focus (the cursor, the selection) is left out: the owner answers the signals.
// It asks for the height of a fingertip, 44 pixels.
class PANELKIT_EXPORT MyLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    explicit MyLineEdit(QWidget *parent = nullptr);
    QSize sizeHint() const override;

Q_SIGNALS:
    void focusIn();
    void focusOut();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
};
