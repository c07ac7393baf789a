// A file browser above a real folder.
#pragma once

#include "tests/widgets/widgetfixture.h"
#include "widgets/filebrowser.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>

namespace panelkit::testing {

template <typename Fixture>
class BrowserOn : public Fixture
{
protected:
    const int pathRole = 33;
    const int folderRole = 34;

    // The folder of the test, "a/b" below it, files and folders in it.
    QString root() const { return m_folder.path(); }
    QString path(const QString &name) const { return root() + QLatin1Char('/') + name; }
    void makeFolder(const QString &name) { ASSERT_TRUE(QDir().mkpath(path(name))); }
    void makeFile(const QString &name)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path(name).toStdString();
    }

    // Configures and starts the browser with the test's folder as the only root.
    void browse(FileBroType_e type, const QStringList &extensions = QStringList())
    {
        browser.setBroType(type);
        browser.setExtension(extensions);
        browser.setFileBrowserInfo({{QStringLiteral("Storage"), root()}});
        browser.reTranslateUI();
    }

    QStringList listed() const
    {
        QStringList names;
        for (int row = 0; row < list->count(); ++row)
            names << list->item(row)->text();
        return names;
    }

    QListWidgetItem *item(const QString &name) const
    {
        const QList<QListWidgetItem *> found = list->findItems(name, Qt::MatchExactly);
        return found.isEmpty() ? nullptr : found.first();
    }

    void tapItem(const QString &name)
    {
        QListWidgetItem *const target = item(name);
        ASSERT_NE(target, nullptr) << name.toStdString();
        list->scrollToItem(target);
        this->tap(list->viewport(), list->visualItemRect(target).center());
    }

    bool showsThatFolderIsMissing() const
    {
        return list->count() == 1 && list->item(0)->text() == QStringLiteral("Folder does not exist") &&
               list->item(0)->data(pathRole) == QVariant(QString()) &&
               list->item(0)->data(pathRole).isValid() &&
               list->item(0)->data(folderRole) == QVariant(false) &&
               list->item(0)->data(folderRole).isValid();
    }

    QTemporaryDir m_folder;
    FileBrowser browser;
    QListWidget *const list = browser.findChild<QListWidget *>(QStringLiteral("listWidget"));
    QPushButton *const back = browser.findChild<QPushButton *>(QStringLiteral("btn_return"));
    QPushButton *const ok = browser.findChild<QPushButton *>(QStringLiteral("btn_ok"));
    QPushButton *const cancel = browser.findChild<QPushButton *>(QStringLiteral("btn_cancel"));
    QComboBox *const rootNames = browser.findChild<QComboBox *>(QStringLiteral("cb_root_name"));
    QLabel *const title = browser.findChild<QLabel *>(QStringLiteral("label_title"));
};

} // namespace panelkit::testing
