#include "widgets/filebrowserform.h"

#include "widgets/touch.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace panelkit {

namespace {

template <typename Object>
Object *named(Object *object, const char *name)
{
    object->setObjectName(QLatin1String(name));
    return object;
}

} // namespace

void FileBrowserForm::setupUi(QWidget *form)
{
    if (form->objectName().isEmpty())
        form->setObjectName(QLatin1String("FileBrowser"));
    form->resize(645, 574);

    // A long title or root must not make the browser wider than the screen.
    label_title = named(new QLabel(form), "label_title");
    label_title->setWordWrap(true);
    label_title->setMinimumWidth(1);

    btn_return = named(new TouchButton(form), "btn_return");
    cb_root_name = named(new QComboBox(form), "cb_root_name");
    cb_root_name->setMinimumHeight(fingerHeight);
    cb_root_name->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cb_root_name->setMinimumContentsLength(6);
    cb_root_name->setItemDelegate(new TouchRowDelegate(cb_root_name));

    listWidget = named(new QListWidget(form), "listWidget");
    makeTouchList(listWidget);

    btn_cancel = named(new TouchButton(form), "btn_cancel");
    btn_ok = named(new TouchButton(form), "btn_ok");

    verticalLayout = named(new QVBoxLayout(form), "verticalLayout");
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
