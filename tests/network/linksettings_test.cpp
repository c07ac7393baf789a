// The file of link settings in other hands: read by another program, edited by a person, on a disk that
// fails.

#include "network/dynamiclink.h"

#include "tests/network/linkpanel.h"
#include "tests/support/ordinaryuser.h"

#include <QDir>
#include <QProcess>
#include <QSettings>

#include <functional>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using panelkit::testing::LinkPanel;
using panelkit::testing::OrdinaryUser;

namespace {

// What `work` gives in a process of its own, or -1 when that process dies.
int inOwnProcess(const std::function<int()> &work)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(work());
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

bool write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}

constexpr int noMounts = 99;

// Gives this process mounts of its own, as root or, where ordinary users may have namespaces, as anybody.
bool enterOwnMounts()
{
    const QByteArray user = QByteArray::number(getuid());
    const QByteArray group = QByteArray::number(getgid());
    if (geteuid() == 0) {
        if (unshare(CLONE_NEWNS) != 0)
            return false;
    } else if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 ||
               !write(QStringLiteral("/proc/self/setgroups"), "deny") ||
               !write(QStringLiteral("/proc/self/uid_map"), "0 " + user + " 1") ||
               !write(QStringLiteral("/proc/self/gid_map"), "0 " + group + " 1")) {
        return false;
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// From here on a file of this process ends at `size` bytes, as on a disk without space; a write beyond that
// ends the process.
bool limitFileSize(rlim_t size)
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return false;
    limit.rlim_cur = size;
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

class LinkSettings : public LinkPanel
{
protected:
    int save(QSettings &target, dynamecslinkParam_t *param = nullptr)
    {
        return saveDynamicsLinkParam(&target, &comm, param);
    }

    QByteArray content() const
    {
        QFile file(settings.fileName());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }

    QStringList filesLeft() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    // The words that a load writes, in the order of their addresses.
    QList<int> registers() const
    {
        QList<int> values;
        for (int address : {64002, 64003, 64004, 64005, 64006, 64007, 64020, 64021, 64022, 64023, 64024,
                            64040, 64041, 64042, 64043, 64044, 64045})
            values.append(word(address));
        return values;
    }

    // A disk without room: nothing is set, nothing is reported. 0 when that is so, else what is not.
    int saveIsRefused()
    {
        QSettings crowded(settings.fileName(), QSettings::IniFormat);
        editLink(3);
        dynamecslinkParam_t param = {};
        if (save(crowded, &param) != 0)
            return 1;
        if (param.station != 0 || param.linkId != 0)
            return 2;
        if (flag(60212) != 0)
            return 3;
        if (crowded.status() != QSettings::NoError)
            return 4;
        if (crowded.value(QStringLiteral("link3/baudlow")).toInt() != 9600)
            return 5;
        return 0;
    }

    // Saves a file of link 3 and `other` on a disk that has room for so many pages besides, in a process of
    // its own. 0 when the new file is there, 1 when it is the earlier one and the save was refused, else
    // noMounts or what is wrong.
    int saveOnCrowdedDisk(const QByteArray &other, int freePages, bool byLink)
    {
        const QString disk = folder.filePath(QStringLiteral("disk"));
        QDir().mkdir(disk);
        if (!enterOwnMounts() ||
            mount("none", QFile::encodeName(disk).constData(), "tmpfs", 0, "size=64k") != 0)
            return noMounts;
        const QString onDisk = disk + QStringLiteral("/links.ini");
        QFile::link(onDisk, settings.fileName());

        const QByteArray before = serialGroup + other;
        const int usedPages = static_cast<int>((before.size() + 4095) / 4096);
        if (!write(onDisk, before))
            return 2;
        if (!write(disk + QStringLiteral("/filler"), QByteArray(4096 * (16 - usedPages - freePages), 'x')))
            return 3;
        editLink(3);
        int saved = 0;
        {
            QSettings crowded(byLink ? settings.fileName() : onDisk, QSettings::IniFormat);
            saved = save(crowded);
        }
        if (saved == 0)
            return content() == before ? 1 : 4;
        const QByteArray after = content(); // another settings object would also see what is in memory alone
        return after.contains("baudlow=115200") && after.endsWith("zlast=99\n") ? 0 : 5;
    }

    // A file that may not be written: the save says 1 all the same, the record holds what was to be saved,
    // and the settings object knows. 0 when that is so, else what is not.
    int saveFails()
    {
        QSettings failing(settings.fileName(), QSettings::IniFormat);
        editLink(3);
        dynamecslinkParam_t param = {};
        if (save(failing, &param) != 1)
            return 1;
        if (param.baud != 115200 || param.stopBits != 1)
            return 2;
        if (failing.status() != QSettings::AccessError)
            return 3;
        if (failing.value(QStringLiteral("link3/baudlow")).toInt() != 115200)
            return 4;
        return 0;
    }
};

} // namespace

TEST_F(LinkSettings, AreReadByAnotherProgramAsTheyWereWritten)
{
    editLink(3);
    ASSERT_EQ(save(settings), 1);
    editLink(12);
    ASSERT_EQ(save(settings), 1);

    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral(PANELKIT_TEST_DATA "/printsettings.py"), settings.fileName()});
    ASSERT_TRUE(python.waitForFinished());
    EXPECT_EQ(python.readAllStandardError(), "");
    EXPECT_EQ(QString::fromUtf8(python.readAllStandardOutput()),
              QStringLiteral("link12/addmore=1\n"
                             "link12/addrinterval=16\n"
                             "link12/driLib=libmodbus_tcp.so\n"
                             "link12/interval=100\n"
                             "link12/ip1=192\n"
                             "link12/ip2=168\n"
                             "link12/ip3=1\n"
                             "link12/ip4=77\n"
                             "link12/plcStation=5\n"
                             "link12/port=502\n"
                             "link12/retry=3\n"
                             "link12/timeout=1000\n"
                             "link3/addmore=1\n"
                             "link3/addrinterval=16\n"
                             "link3/baudlow=115200\n"
                             "link3/check=2\n"
                             "link3/data=8\n"
                             "link3/driLib=libmodbus_rtu.so\n"
                             "link3/interval=100\n"
                             "link3/mode=1\n"
                             "link3/plcStation=5\n"
                             "link3/retry=3\n"
                             "link3/stop=1\n"
                             "link3/timeout=1000\n"));
}

TEST_F(LinkSettings, EditedByHandLoadAsTheyStand)
{
    const QByteArray head = "[link3]\ndriLib=libmodbus_rtu.so\n";
    const QList<int> stored = {21, 22, 23, 24, 25, 26, 0, 0, 0, 0, 0, 2, 9600, 0, 7, 1, 2};
    const QList<int> zeros = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const QList<int> projects = {41, 42, 43, 44, 45, 46, 0, 0, 0, 0, 0, 0, 38400, 0, 8, 1, 2};
    const struct
    {
        const char *name;
        QByteArray content;
        QList<int> registers;
    } rows[] = {
        {"as it was written", serialGroup, stored},
        {"lines that end in CR LF", QByteArray(serialGroup).replace("\n", "\r\n"), stored},
        {"no line end at the end", QByteArray(serialGroup).trimmed(), stored},
        {"blanks, comments, empty lines",
         QByteArray(serialGroup).replace("\n", "  \n\n; a note\n").replace("=", " = "), stored},
        {"a byte-order mark", QByteArray("\xef\xbb\xbf") + serialGroup, stored},
        {"quoted numbers", QByteArray(serialGroup).replace("9600", "\"9600\"").replace("=7\n", "=\"7\"\n"),
         stored},
        {"keys of the other kind of link", QByteArray(serialGroup) + "ip1=1\nip2=2\nip3=3\nip4=4\nport=5\n",
         stored},
        {"foreign keys and groups", QByteArray(serialGroup) + "note=x\n[other]\nplcStation=99\n", stored},
        {"a group twice, the later keys count",
         QByteArray(serialGroup) + "[link3]\nplcStation=31\n",
         {31, 22, 23, 24, 25, 26, 0, 0, 0, 0, 0, 2, 9600, 0, 7, 1, 2}},
        {"no keys but the driver", head, zeros},
        {"some keys missing",
         head + "interval=22\nbaudlow=9600\n",
         {0, 22, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9600, 0, 0, 0, 0}},
        {"text instead of numbers",
         head +
             "plcStation=five\ninterval=\ntimeout=12ms\nretry=1.5\naddmore=0x10\naddrinterval=1,2\nmode=on\n",
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"numbers beyond a word",
         head + "plcStation=70000\ninterval=-1\nmode=-1\nbaudlow=-2\nstop=65536\n",
         {4464, 65535, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 65534, 65535, 0, 0, 0}},
        {"keys with other case", head + "PLCSTATION=5\nBaudLow=9600\n", zeros},
        {"a driver with other case", QByteArray(serialGroup).replace("driLib=lib", "driLib=Lib"), projects},
        {"no driver", QByteArray(serialGroup).replace("driLib=libmodbus_rtu.so\n", ""), projects},
        {"a driver that reads as a list", QByteArray(serialGroup).replace("libmodbus_rtu.so", "a, b"),
         projects},
        {"a group with other case", QByteArray(serialGroup).replace("[link3]", "[Link3]"), projects},
        {"only another link's group", QByteArray(serialGroup).replace("[link3]", "[link33]"), projects},
        {"an empty group", "[link3]\n", projects},
        {"nothing", "", projects},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString name = folder.filePath(QString::fromLatin1(row.name));
        ASSERT_TRUE(write(name, row.content));
        QSettings edited(name, QSettings::IniFormat);
        editLink(3);
        EXPECT_EQ(loadDynamicsLinkParam(&edited, &comm), 1);
        EXPECT_EQ(registers(), row.registers);
    }
}

TEST_F(LinkSettings, ThatAreRubbishGiveTheProjectsValuesAndTakeASave)
{
    QByteArray everyByte;
    for (int i = 0; i < 5000; ++i)
        everyByte.append(static_cast<char>(i * 7 + i / 256));
    const struct
    {
        const char *name;
        QByteArray content;
        int station; // as it is loaded: the project's, but for a group that can be read and lacks it
    } rows[] = {
        {"every byte", everyByte, 41},
        {"zeros", QByteArray(5000, '\0'), 41},
        {"a bracket that is never closed", "[link3\ndriLib=libmodbus_rtu.so\n", 0},
        {"brackets", "[[[[]]]][][\n", 41},
        {"signs", "=====\n%%%%\n\\\\\\\\\n@@@@\n", 41},
        {"an unfinished text", "[link3]\ndriLib=\"libmodbus_rtu.so\n", 41},
        {"an unfinished escape", "[link3]\ndriLib=\\x\nplcStation=\\", 41},
        {"a variant that is none", "[link3]\ndriLib=@Variant(\\0\\0\\0\\x7f\\xff\\xff\\xff\\xff)\n", 41},
        {"a long line", "[link3]\ndriLib=" + QByteArray(100000, 'x'), 41},
        {"a picture", "\x89PNG\r\n\x1a\n" + everyByte, 41},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString name = folder.filePath(QString::fromLatin1(row.name));
        ASSERT_TRUE(write(name, row.content));
        {
            QSettings rubbish(name, QSettings::IniFormat);
            setWords(64000, {3});
            EXPECT_EQ(loadDynamicsLinkParam(&rubbish, &comm), 1);
            EXPECT_EQ(word(64002), row.station);
            editLink(3);
            EXPECT_EQ(save(rubbish), 1);
        }
        const QSettings saved(name, QSettings::IniFormat);
        EXPECT_EQ(saved.value(QStringLiteral("link3/driLib")).toString(), QStringLiteral("libmodbus_rtu.so"));
        EXPECT_EQ(saved.value(QStringLiteral("link3/baudlow")).toInt(), 115200);
    }
}

TEST_F(LinkSettings, KeepGoodGroupsOfAFileThatIsPartlyRubbish)
{
    writeSettings(QByteArray(serialGroup).replace("link3", "link5") + "no key at all\n[[\n\x01\x02\xff\n");
    QSettings partly(settings.fileName(), QSettings::IniFormat);
    editLink(3);
    EXPECT_EQ(save(partly), 1);
    const QSettings saved(settings.fileName(), QSettings::IniFormat);
    EXPECT_EQ(saved.value(QStringLiteral("link5/baudlow")).toInt(), 9600);
    EXPECT_EQ(saved.value(QStringLiteral("link3/baudlow")).toInt(), 115200);
}

// The toolkit would put the part that fits in the place of the whole file, so nothing may be given to it.
TEST_F(LinkSettings, StayWholeWhenTheyWouldNotFitOnTheDisk)
{
    writeSettings(serialGroup);
    for (rlim_t size : std::initializer_list<rlim_t>{0, 20, 60, 100, 150, 160, 170, 200}) {
        SCOPED_TRACE(size);
        EXPECT_EQ(inOwnProcess([&] { return limitFileSize(size) ? saveIsRefused() : 100; }), 0);
        EXPECT_EQ(content(), serialGroup);
        EXPECT_EQ(filesLeft(), QStringList(QStringLiteral("links.ini")));
    }
}

// Room cannot be asked for there.
TEST_F(LinkSettings, AreSavedIntoAFolderThatIsStillToBeMade)
{
    const QString name = folder.filePath(QStringLiteral("new/links.ini"));
    QSettings elsewhere(name, QSettings::IniFormat);
    editLink(3);
    EXPECT_EQ(save(elsewhere), 1);
    EXPECT_EQ(elsewhere.status(), QSettings::NoError);
    EXPECT_TRUE(QFile::exists(name));
}

// Room is asked for what is in the file, three bytes more for each that may have to be written otherwise, and
// 352 bytes: 256 for a group of numbers, six for each of the 16 letters of the driver library.
TEST_F(LinkSettings, AreSavedAsSoonAsTheyFitForSure)
{
    const struct
    {
        const char *name;
        QByteArray content;
        int growth;
    } rows[] = {
        {"nothing", "", 0},
        {"no group", "key=1\n", 0},
        {"as the toolkit writes it", serialGroup, 3}, // the bracket may get an empty line in front of it
        {"two groups", "[a]\nkey=1\n\n[b]\nkey=1\n", 6},
        {"a second sign in a line", "a=b=c\nd=e\n", 3},
        {"blank, semicolon and letter", "a=b ;\xe4\n", 9},
        {"a zero", QByteArray("a=\0\n", 4), 3},
        {"signs that stay", "a=_-./\\\"]\n", 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString name = folder.filePath(QString::fromLatin1(row.name));
        const auto saveWithin = [&](rlim_t limit) {
            QSettings limited(name, QSettings::IniFormat);
            editLink(3);
            return limitFileSize(limit) ? save(limited) : 2;
        };
        const rlim_t needed = static_cast<rlim_t>(row.content.size() + row.growth + 352);
        ASSERT_TRUE(row.content.isEmpty() || write(name, row.content));
        EXPECT_EQ(inOwnProcess([&] { return saveWithin(needed - 1); }), 0);
        EXPECT_EQ(inOwnProcess([&] { return saveWithin(needed); }), 1);
    }
}

// The file holds six bytes for each letter of a driver library's name that is not ASCII.
TEST_F(LinkSettings, StayWholeWhenTheDriversNameAloneWouldNotFit)
{
    writeSettings(serialGroup);
    comm.links[3].driverLib = QString(2000, QChar(0x4E2D));
    EXPECT_EQ(inOwnProcess([&] { return limitFileSize(9000) ? saveIsRefused() : 100; }), 0);
    EXPECT_EQ(content(), serialGroup);
}

// With every number of free pages, on the disk itself and by a link that leads to it: either nothing changes,
// or, as soon as the toolkit can do it, all of it is there. The toolkit takes what the new file needs besides
// the earlier one, and a page for its lock, which is not on the disk where the settings are there by a link.
TEST_F(LinkSettings, StayWholeOnADiskThatIsReallyFull)
{
    QByteArray numbers;
    for (int i = 1000; numbers.size() < 5000; ++i)
        numbers += "key" + QByteArray::number(i) + "=" + QByteArray::number(i) + "\n";
    const struct
    {
        const char *name;
        QByteArray other;
        int pages; // of the new file
    } rows[] = {
        {"a small file", "", 1},
        {"a file of two pages", numbers, 2},
        {"letters that take four bytes once they are written anew", "note=" + QByteArray(2900, '\xe4') + "\n",
         3},
    };
    for (const auto &row : rows) {
        for (const bool byLink : {false, true}) {
            const int needed = byLink ? row.pages : row.pages + 1;
            for (int freePages = 0; freePages <= 6; ++freePages) {
                SCOPED_TRACE(QStringLiteral("%1, %2 free pages%3")
                                 .arg(QLatin1String(row.name))
                                 .arg(freePages)
                                 .arg(QLatin1String(byLink ? ", by a link" : ""))
                                 .toStdString());
                const QByteArray other = "[other]\n" + row.other + "zlast=99\n";
                const int result = inOwnProcess([&] { return saveOnCrowdedDisk(other, freePages, byLink); });
                if (result == noMounts)
                    GTEST_SKIP() << "no mount namespaces here: a disk of a few pages cannot be made";
                EXPECT_EQ(result, freePages < needed ? 1 : 0);
            }
        }
    }
}

// A save writes some 170 bytes; asking for room beyond the limit would end the process.
TEST_F(LinkSettings, AreSavedWithinTheLargestFileOfTheProcess)
{
    writeSettings(serialGroup);
    const int result = inOwnProcess([&] {
        QSettings limited(settings.fileName(), QSettings::IniFormat);
        editLink(3);
        return limitFileSize(1000) && save(limited) == 1 && limited.status() == QSettings::NoError ? 0 : 1;
    });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(content().contains("baudlow=115200"));
}

TEST_F(LinkSettings, ReachTheDiskWhenThereIsRoomAgainAndTheOperatorAsksAgain)
{
    writeSettings(serialGroup);
    const int result = inOwnProcess([&] {
        QSettings crowded(settings.fileName(), QSettings::IniFormat);
        editLink(3);
        if (!limitFileSize(100) || save(crowded) != 0 || !limitFileSize(RLIM_INFINITY))
            return 1;
        editLink(3);
        return save(crowded) == 1 && crowded.status() == QSettings::NoError ? 0 : 2;
    });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(content().contains("baudlow=115200"));
}

TEST_F(LinkSettings, StayWholeWhenTheFileMayNotBeWritten)
{
    writeSettings(serialGroup);
    ASSERT_EQ(chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
    ASSERT_EQ(chmod(QFile::encodeName(settings.fileName()).constData(), 0444), 0);
    {
        const OrdinaryUser user;
        ASSERT_TRUE(user.holds());
        EXPECT_EQ(saveFails(), 0);
    }
    EXPECT_EQ(content(), serialGroup);
    EXPECT_EQ(filesLeft(), QStringList(QStringLiteral("links.ini")));
}

TEST_F(LinkSettings, StayWholeWhenTheFolderMayNotBeWritten)
{
    writeSettings(serialGroup);
    ASSERT_EQ(chmod(QFile::encodeName(settings.fileName()).constData(), 0666), 0);
    ASSERT_EQ(chmod(QFile::encodeName(folder.path()).constData(), 0555), 0);
    {
        const OrdinaryUser user;
        ASSERT_TRUE(user.holds());
        EXPECT_EQ(saveFails(), 0);
    }
    ASSERT_EQ(chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
    EXPECT_EQ(content(), serialGroup);
    EXPECT_EQ(filesLeft(), QStringList(QStringLiteral("links.ini")));
}

TEST_F(LinkSettings, ThatMayNotBeReadGiveTheProjectsValues)
{
    const QString name = folder.filePath(QStringLiteral("closed.ini"));
    ASSERT_TRUE(write(name, serialGroup));
    ASSERT_EQ(chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
    ASSERT_EQ(chmod(QFile::encodeName(name).constData(), 0), 0);
    {
        const OrdinaryUser user;
        ASSERT_TRUE(user.holds());
        QSettings closed(name, QSettings::IniFormat);
        setWords(64000, {3});
        EXPECT_EQ(loadDynamicsLinkParam(&closed, &comm), 1);
    }
    EXPECT_EQ(word(64041), 38400);
}

TEST_F(LinkSettings, AreMadeWithTheirFolder)
{
    QSettings fresh(folder.filePath(QStringLiteral("a/b/links.ini")), QSettings::IniFormat);
    editLink(3);
    EXPECT_EQ(save(fresh), 1);
    EXPECT_EQ(fresh.status(), QSettings::NoError);
    EXPECT_TRUE(QFileInfo::exists(folder.filePath(QStringLiteral("a/b/links.ini"))));
}

TEST_F(LinkSettings, ThatAreAFolderGiveTheProjectsValuesAndTakeNoSave)
{
    ASSERT_TRUE(QDir().mkdir(settings.fileName()));
    editLink(3);
    EXPECT_EQ(loadDynamicsLinkParam(&settings, &comm), 1);
    EXPECT_EQ(word(64041), 38400);
    editLink(3);
    EXPECT_EQ(save(settings), 1);
    EXPECT_EQ(settings.status(), QSettings::AccessError);
}
