// The child widgets of the file browser.
#pragma once

class QComboBox;
class QHBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QVBoxLayout;
class QWidget;

namespace panelkit {

// The widgets are children of the form they are set up on and live as long as that does.
class FileBrowserForm
{
public:
    void setupUi(QWidget *form);
    void retranslateUi(QWidget *form);

    QVBoxLayout *verticalLayout;
    QLabel *label_title;
    QHBoxLayout *horizontalLayout;
    QPushButton *btn_return;
    QComboBox *cb_root_name;
    QListWidget *listWidget;
    QHBoxLayout *horizontalLayout_2;
    QPushButton *btn_cancel;
    QPushButton *btn_ok;
};

} // namespace panelkit
