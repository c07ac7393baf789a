#include "widgets/filebrowserform.h"

#include "platform/qtcompatwidgets.h"
#include "widgets/folderlisting.h"
#include "widgets/touch.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPolygon>
#include <QVBoxLayout>

namespace panelkit {

namespace {

template <typename Object>
Object *named(Object *object, const char *name)
{
    object->setObjectName(QLatin1String(name));
    return object;
}

// Draws an arrow in the rows of folders: tapping them leads on.
class EntryDelegate : public TouchRowDelegate
{
public:
    explicit EntryDelegate(QObject *parent) : TouchRowDelegate(parent) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        if (!index.data(folderRole).toBool()) {
            TouchRowDelegate::paint(painter, option, index);
            return;
        }
        const bool selected = option.state & QStyle::State_Selected;
        if (selected)
            painter->fillRect(option.rect, option.palette.highlight());
        ItemViewOption name = option;
        name.rect.setRight(option.rect.right() - fingerHeight / 2);
        TouchRowDelegate::paint(painter, name, index);

        const QPoint tip(option.rect.right() - fingerHeight / 4, option.rect.center().y());
        const QPolygon arrow = QPolygon() << tip + QPoint(-5, -6) << tip << tip + QPoint(-5, 6);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text), 2));
        painter->drawPolyline(arrow);
        painter->restore();
    }
};

} // namespace

void FileBrowserForm::setupUi(QWidget *form)
{
    if (form->objectName().isEmpty())
        form->setObjectName(QLatin1String("FileBrowser"));
    form->resize(645, 574);

    // A long title must not make the browser wider than the screen.
    label_title = named(new QLabel(form), "label_title");
    label_title->setWordWrap(true);
    label_title->setMinimumWidth(1);

    btn_return = named(new TouchButton(form), "btn_return");
    cb_root_name = named(new TouchComboBox(form), "cb_root_name");
    listWidget = named(new QListWidget(form), "listWidget");
    makeTouchList(listWidget);
    listWidget->setItemDelegate(new EntryDelegate(listWidget));

    btn_cancel = named(new TouchButton(form), "btn_cancel");
    btn_ok = named(new TouchButton(form), "btn_ok");

    verticalLayout = named(new QVBoxLayout(form), "verticalLayout");
    verticalLayout->setContentsMargins(4, 4, 4, 4);
    verticalLayout->setSpacing(4);
    verticalLayout->addWidget(label_title);
    horizontalLayout = named(new QHBoxLayout, "horizontalLayout");
    horizontalLayout->addWidget(btn_return);
    horizontalLayout->addWidget(cb_root_name);
    verticalLayout->addLayout(horizontalLayout);
    verticalLayout->addWidget(listWidget);
    horizontalLayout_2 = named(new QHBoxLayout, "horizontalLayout_2");
    horizontalLayout_2->addWidget(btn_cancel);
    horizontalLayout_2->addWidget(btn_ok);
    verticalLayout->addLayout(horizontalLayout_2);

    retranslateUi(form);
    QMetaObject::connectSlotsByName(form);
}

void FileBrowserForm::retranslateUi(QWidget *form)
{
    form->setWindowTitle(QCoreApplication::translate("FileBrowser", "Form"));
    label_title->setText(QCoreApplication::translate("FileBrowser", "TextLabel"));
    btn_return->setText(QCoreApplication::translate("FileBrowser", "Return to the previous directory"));
    btn_cancel->setText(QCoreApplication::translate("FileBrowser", "Cancel"));
    btn_ok->setText(QCoreApplication::translate("FileBrowser", "OK"));
    cb_root_name->setAccessibleName(QCoreApplication::translate("FileBrowser", "Storage"));
    listWidget->setAccessibleName(QCoreApplication::translate("FileBrowser", "Files and folders"));
}

} // namespace panelkit
