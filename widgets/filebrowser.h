// A full-screen dialog in which the operator picks files or a folder below a few named roots.
#pragma once

#include "platform/export.h"

#include <QGraphicsView>
#include <QList>
#include <QString>

class QListWidgetItem;

namespace panelkit {
class FileBrowserForm;
}

// A folder in which the operator may browse.
struct FileBro_t
{
    QString name; // as the operator sees it
    QString path;
};

// What is picked. In the file modes tapping a folder opens it; in the folder mode only folders are listed and
// the folder that is shown is the result. A mode of any other number lists nothing.
enum FileBroType_e : int
{
    FileBro_SingleFile = 0,
    FileBro_MultiFile = 1,
    FileBro_Folder = 2
};

// Configure it, call reTranslateUI, show it, and ask for the selection when fileBro_OK comes. It covers the
// panel's screen and starts in the mode FileBro_SingleFile. Folders that cannot be read list nothing, one
// that is not there shows as the single entry "Folder does not exist".
//
// The names of the child widgets are an interface: "label_title", "btn_return", "cb_root_name", "listWidget",
// "btn_cancel" and "btn_ok". Each entry of the list has its full path under role 33 and whether it is a
// folder under role 34. Hidden entries and links are never listed.
class PANELKIT_EXPORT FileBrowser : public QGraphicsView
{
    Q_OBJECT
public:
    explicit FileBrowser(QWidget *parent = nullptr);
    ~FileBrowser();

    void setTitle(QString const &title); // shown at the next reTranslateUI
    void setBroType(FileBroType_e type); // counts from the next listing on
    FileBroType_e getBroType();

    // Suffixes without a dot, compared exactly; files with another one, or with none, are not listed. An
    // empty list means all files. Counts from the next listing on.
    void setExtension(QList<QString> const &extensions);

    // Replaces the roots; the paths are kept in cleaned form. Shown at the next reTranslateUI.
    void setFileBrowserInfo(QList<FileBro_t> const &roots);

    // Sets all texts in the language of the moment and starts over in the first root. To be called after the
    // browser is configured and whenever the language changes.
    void reTranslateUI();

    // Lists a folder. It need not be below a root; the return button then climbs all the same.
    void showDir(QString const &path);

    // The paths of the selected files, or of the folder that is shown; empty when there is none.
    QList<QString> getSelectFile();

Q_SIGNALS:
    // Both are sent before the browser closes.
    void fileBro_OK();
    void fileBro_Cancel();

private Q_SLOTS:
    void on_btn_return_clicked();
    void on_btn_ok_clicked();
    void on_cb_root_name_currentIndexChanged(int index);
    void on_btn_cancel_clicked();
    void on_listWidget_itemClicked(QListWidgetItem *item);

private:
    panelkit::FileBrowserForm *m_form;
    QString m_title;
    FileBroType_e m_broType;
    QString m_currentPath; // cleaned, or empty while no folder is shown
    QList<QString> m_extensions;
    QList<QString> m_selectFiles;
    QList<FileBro_t> m_roots;
};
