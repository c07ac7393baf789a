#include "widgets/filebrowser.h"

#include "platform/qtcompatwidgets.h"
#include "widgets/filebrowserform.h"
#include "widgets/folderlisting.h"
#include "widgets/panelscreen.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>

using namespace panelkit;

namespace {

// Each insertion is announced to the view and its selection, which makes half of the work. Here the list is
// empty and nothing in it is selected: the view lays out all rows anew whatever it is told, and once is
// enough.
void fill(QListWidget *emptyList, const QList<FolderEntry *> &entries)
{
    QAbstractItemModel *const model = emptyList->model();
    const bool blocked = model->blockSignals(true);
    for (int row = 0; row < entries.size(); ++row) {
        if (row == entries.size() - 1)
            model->blockSignals(blocked);
        emptyList->addItem(entries.at(row));
    }
    model->blockSignals(blocked);
}

} // namespace

FileBrowser::FileBrowser(QWidget *parent)
    : QGraphicsView(parent),
      m_form(new FileBrowserForm),
      m_broType(FileBro_SingleFile)
{
    m_form->setupUi(this);
    setGeometry(QRect(QPoint(0, 0), panelScreenSize(size())));
}

FileBrowser::~FileBrowser()
{
    delete m_form;
}

void FileBrowser::setTitle(QString const &title)
{
    m_title = title;
}

void FileBrowser::setBroType(FileBroType_e type)
{
    m_broType = type;
    const bool single = type == FileBro_SingleFile || type == FileBro_Folder;
    m_form->listWidget->setSelectionMode(single ? QAbstractItemView::SingleSelection
                                                : QAbstractItemView::MultiSelection);
}

FileBroType_e FileBrowser::getBroType()
{
    return m_broType;
}

void FileBrowser::setExtension(QList<QString> const &extensions)
{
    m_extensions = extensions;
}

void FileBrowser::setFileBrowserInfo(QList<FileBro_t> const &roots)
{
    QList<FileBro_t> cleaned = roots;
    for (FileBro_t &root : cleaned)
        root.path = QDir::cleanPath(root.path);
    m_roots = cleaned;
}

void FileBrowser::reTranslateUI()
{
    m_form->retranslateUi(this);
    m_form->label_title->setText(m_title);

    QComboBox *const rootNames = m_form->cb_root_name;
    const bool blocked = rootNames->blockSignals(true);
    rootNames->clear();
    const QList<FileBro_t> roots = m_roots;
    for (const FileBro_t &root : roots)
        rootNames->addItem(QIcon(), root.name);
    if (!m_roots.isEmpty())
        m_currentPath = m_roots.first().path;
    rootNames->blockSignals(blocked);
    showDir(m_currentPath);
}

void FileBrowser::showDir(QString const &path)
{
    QListWidget *const list = m_form->listWidget;
    stopScrolling(list->viewport());
    list->clear();
    list->scrollToTop();
    if (path.isEmpty() || !QDir(path).exists()) {
        QListWidgetItem *const notice = new QListWidgetItem(tr("Folder does not exist"));
        notice->setData(pathRole, QString());
        notice->setData(folderRole, false);
        list->addItem(notice);
        m_currentPath.clear();
        return;
    }
    if (m_broType == FileBro_SingleFile || m_broType == FileBro_MultiFile || m_broType == FileBro_Folder)
        fill(list, folderEntries(path, m_broType != FileBro_Folder, m_extensions));
    m_currentPath = QDir::cleanPath(path);
}

QList<QString> FileBrowser::getSelectFile()
{
    m_selectFiles.clear();
    if (m_broType == FileBro_Folder) {
        if (!m_currentPath.isEmpty())
            m_selectFiles.append(QDir::cleanPath(m_currentPath));
        return m_selectFiles;
    }
    const QList<QListWidgetItem *> items = m_form->listWidget->selectedItems();
    for (const QListWidgetItem *item : items) {
        const QString path = item->data(pathRole).toString();
        if (!item->data(folderRole).toBool() && !path.isEmpty())
            m_selectFiles.append(path);
    }
    return m_selectFiles;
}

void FileBrowser::on_btn_return_clicked()
{
    const int root = m_form->cb_root_name->currentIndex();
    if (root < 0 || root >= m_roots.size() || m_currentPath.isEmpty())
        return;
    if (m_currentPath == m_roots.at(root).path)
        return;
    QDir folder(m_currentPath);
    if (folder.cdUp())
        showDir(folder.path());
}

void FileBrowser::on_btn_ok_clicked()
{
    Q_EMIT fileBro_OK();
    close();
}

void FileBrowser::on_cb_root_name_currentIndexChanged(int index)
{
    if (index >= 0 && index < m_roots.size())
        showDir(m_roots.at(index).path);
}

void FileBrowser::on_btn_cancel_clicked()
{
    Q_EMIT fileBro_Cancel();
    close();
}

void FileBrowser::on_listWidget_itemClicked(QListWidgetItem *item)
{
    if (item != nullptr && item->data(folderRole).toBool())
        showDir(item->data(pathRole).toString());
}
