// Calls everything that libpanelkit exports, as a program of another project: it sees the installed headers
// alone.
#include <panelkit/panelkit.h>
#include <panelkit/simulator/platform/eventlibrary.h>
#include <panelkit/simulator/platform/objecttree.h>
#include <panelkit/simulator/platform/systembase.h>

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QFocusEvent>
#include <QSettings>
#include <QShowEvent>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>
#include <typeinfo>

using panelkit::simulator::ObjectTree;

namespace {

int failures = 0;

void expect(bool holds, const char *what)
{
    if (!holds) {
        std::printf("not as expected: %s\n", what);
        ++failures;
    }
}
#define EXPECT(condition) expect(condition, #condition)

// One Ethernet link, number 1, "PLC"; every register of it holds 21.5, and system registers keep what is
// written.
class Comm final : public InterfaceComm
{
public:
    LinkValue getLinkValue(quint16 linkNumber) override
    {
        LinkValue link;
        link.id = linkNumber == 1 ? 1 : -1;
        link.portName = QLatin1String("Ethernet 1");
        link.driverLib = QLatin1String("drivers/Modbus");
        link.timeout = 700;
        return link;
    }
    LinkValue getLinkValueByName(const QString &name) override
    {
        return getLinkValue(name == QLatin1String("PLC"));
    }
    int resolveAddressIndex(int, const QString &, const QString &text, int, int) override
    {
        return text.toInt();
    }
    int readAddressWords(const RegisterValueChange *, int count, void *buffer) override
    {
        const quint16 words[2] = {0x0000, 0x41AC};
        std::memcpy(buffer, words, count < 2 ? 2 : 4);
        return 0;
    }
    int writeRegisters(int area, int address, int count, const void *buffer) override
    {
        std::memcpy(&m_words[area][address], buffer, static_cast<std::size_t>(count) * 2);
        return 0;
    }
    int readRegisters(int area, int address, int count, void *buffer) override
    {
        std::memcpy(buffer, &m_words[area][address], static_cast<std::size_t>(count) * 2);
        return 0;
    }
    quint16 &word(int area, int address) { return m_words[area][address]; }

private:
    quint16 m_words[2][65536] = {};
};

// Operations that only a subclass may call.
struct LineEdit : MyLineEdit
{
    void turn()
    {
        QFocusEvent in(QEvent::FocusIn);
        QFocusEvent out(QEvent::FocusOut);
        MyLineEdit::focusInEvent(&in);
        MyLineEdit::focusOutEvent(&out);
    }
};
struct Notice : MyMessagebox
{
    using MyMessagebox::MyMessagebox;
    void shown()
    {
        QShowEvent event;
        MyMessagebox::showEvent(&event);
    }
};
struct Question : HMIMessageBox
{
    using HMIMessageBox::HMIMessageBox;
    void closed()
    {
        QCloseEvent event;
        HMIMessageBox::closeEvent(&event);
    }
};

void registers(object *item, Comm &comm)
{
    RegisterValueChange reg = {};
    RegisterValueChangeSize run = {};
    QString text;
    EXPECT(ObjectAddress2RegisterValueChange(item, reg) && reg.linkId == 1 && reg.index == 7);
    EXPECT(ObjectAddress2RegisterValueChangeSize(item, run) && run.length == 2);
    EXPECT(getValueToQString(reg, 2, 6, 2, NUM_FLOAT32, NUM_VIEW_DEC, text) &&
           text == QLatin1String("21.50"));
    EXPECT(conversionAddr2UIText(reg, QLatin1String("8"), &comm, text) && text == QLatin1String("4x8"));
    EXPECT(doubleToQString(1.005, 2) == QLatin1String("1.00"));
    float single = 12.5F;
    EXPECT(ieee754TofloatStr(reinterpret_cast<unsigned char *>(&single), text) &&
           text == QLatin1String("12.5"));
    EXPECT(doubleCmp_More(2, 1) && doubleCmp_Less(1, 2) && doubleCmp_MoreEqu(2, 1) &&
           doubleCmp_LessEqu(1, 2));
    EXPECT(doubleCmp_Equ(1, 1 + 1e-9));
    SendLWFRegMessage(3);
    EXPECT(panelkit::simulator::eventLibraryEntryCount() == 1);

    QByteArray gbk;
    QStringToGB2312Chars(QString(QChar(0x4E2D)), gbk);
    GB2312ToQString(text, gbk.data(), static_cast<int>(gbk.size()));
    EXPECT(text == QString(QChar(0x4E2D)));
    QByteArray utf8 = tools_gb2312ToUtf8(gbk.data(), 2);
    EXPECT(tools_utf8ToGb2312(utf8.data(), static_cast<int>(utf8.size())) == gbk.left(2));
}

void links(object *project, object *item)
{
    address_check checker(project);
    const QString plc = QLatin1String("PLC");
    EXPECT(checker.checkAddress(plc, QLatin1String("LW"), QLatin1String("12"), item, 0, 1, 0) == 0);
    EXPECT(checker.explainAddress(plc, QLatin1String("LW"), QLatin1String("x"), item, 0, 1, 0).code == 4);
    EXPECT(checker.loaclCheckAddress(item, QLatin1String("LB"), QLatin1String("1"), -1, 1) == 0);
    EXPECT(checker.externalCheckAddress({}, item, plc, plc, 0, 1, 0, 0) == 3); // a link without a driver
    EXPECT(checker.checkRetPrompt(2) == -1);
    RegisterValueChange reg = {};
    reg.linkId = 9;
    EXPECT(!checker.rebuildStatioin(reg));

    EXPECT(tools_getAddrIndexFromDriverName(plc, QLatin1String("4x"), QLatin1String("10.5"), true) == 165);
    EXPECT(tools_explainAddrIndex(plc, QLatin1String("4x"), QLatin1String("7"), true).index == 7);
    const QString file = tools_driverFilePath(QLatin1String("drivers/Modbus"), 1);
    EXPECT(file == tools_driverFolder() + QLatin1String("/libModbus_1.so"));
    EXPECT(tools_driverFileState(file) == DriverFileState::Missing);
}

void macros(object *project, object *item, Comm &comm)
{
    helpMacroLua::initMacroVarTable(project);
    EXPECT(helpMacroLua::VarTableDataTypeConverty(1) == QLatin1String("DATA_TYPE_WUB"));
    itemMacro macro;
    helpMacroLua::loadItemMacro(item, macro);
    EXPECT(macro.hasMacro == 1 && macro.pressMacro.contains(QLatin1String("setdata")));
    QString script = QLatin1String("local x = speed");
    helpMacroLua::dealLuaForVarList(script, macro.varMap);
    EXPECT(script.contains(QLatin1String("getdata")));
    EXPECT(helpMacroLua::explainLuaForVarList(QLatin1String("x = speed")).first().kind ==
           LUA_LINE_READS_VARIABLE);
    QList<KEY_ADDRESS> watched;
    helpMacroLua::registerLuaMonitorAddress(macro, watched, &comm);
    EXPECT(watched.size() == 1);
    helpMacroLua::runLua(macro, ITEM_MACRO_PRESS);

    const auto entry = panelkit::simulator::takeEventLibraryEntry();
    EXPECT(entry.has_value());
    delete macro.pressArg;

    InterfaceAll argument;
    argument.keyboardReflash(script);
    argument.execComplete(0, script);
    argument.setOptLogType(4);
    EXPECT(argument.getOptLogType() == 4);
    argument.exportData();
    argument.insertOperatorLog(script);
    argument.insertOperatorLog(QStringList());
    UMessageBoxEvent message(script, 1, 2);
    UExternalFuncCallEvent call(QLatin1String("runLua"), &argument);
    UEventBase plain(1234);
    EXPECT(message.type() == 1007 && call.type() == 1010 && plain.type() == 1234);
    EXPECT(typeid(plain) == typeid(UEventBase) && typeid(message) == typeid(UMessageBoxEvent));
    EXPECT(typeid(call) == typeid(UExternalFuncCallEvent) && typeid(argument) == typeid(InterfaceAll));
}

void network(const QString &folder, Comm &comm)
{
    QSettings settings(folder + QLatin1String("/links.ini"), QSettings::IniFormat);
    dynamecslinkParam_t param = {};
    comm.word(0, 64000) = 1;
    EXPECT(loadDynamicsLinkParam(&settings, &comm) == 1 && comm.word(0, 64004) == 700);
    comm.word(1, 60212) = 1;
    EXPECT(saveDynamicsLinkParam(&settings, &comm, &param) == 1 && param.timeout == 700);
    EXPECT(loadDynamicsLinkFromFile(&settings, &param, QLatin1String("link1"), comm.getLinkValue(1)) == 1);

    QString message;
    const QString address = QLatin1String("192.168.1.20");
    EXPECT(checkIPAddr(address) && !checkIPAddr(QLatin1String("1.2.3")));
    setIPInfo(&comm, 64052, address);
    EXPECT(comm.word(0, 64055) == 20);
    EXPECT(loadHMIIP(true) && !saveHMIIP());
    EXPECT(saveNewIP(address, QLatin1String("255.255.255.0"), address, address, message) &&
           !message.isEmpty());
}

void files(const QString &folder)
{
    QString field;
    EXPECT(helpCSV::toCsvString(QLatin1String("a,b")) == QLatin1String("\"a,b\""));
    EXPECT(helpCSV::fromCsvLine(helpCSV::toCsvStringLine({QLatin1String("a"), QLatin1String("b")})).size() ==
           2);
    EXPECT(helpCSV::advplain(QLatin1String("a,b"), field, 0) == 1);
    EXPECT(helpCSV::advquoted(QLatin1String("\"a\",b"), field, 1) == 3 && field == QLatin1String("a"));
    EXPECT(helpSQLite::toSQLiteString(QLatin1String("it's")) == QLatin1String("it''s"));
    const QStringList header(QLatin1String("time,value"));
    const QList<QStringList> rows = {{QLatin1String("12:00"), QLatin1String("7")}};
    tools_exportToCsv(header, rows, folder + QLatin1String("/table.csv"), 0);
    tools_exportToPdf(header, rows, folder + QLatin1String("/table.pdf"));
    EXPECT(FileCharacterEncoding(folder + QLatin1String("/table.csv")) == 3);
    EXPECT(tools_file_exists(folder + QLatin1String("/table.pdf"), 2, false));
    const QStringList record = {QLatin1String("1"), QLatin1String("2024-04-17 12:00"), QLatin1String("full")};
    EXPECT(tools_strList2DataContent(record, QLatin1String("tank")).time == QLatin1String("12:00"));
}

void runtime(const QString &folder)
{
    EXPECT(tools_iot_version() == 1 && !tools_isIotDevice() && !tools_isBoxDevice());
    EXPECT(tools_get_dev_disk("/").totalMB > 0 && tools_get_dev_mem() > 0);
    cpu_info older = {};
    get_occupy(&older);
    cpu_info newer = older;
    EXPECT(cal_occupy(&older, &newer) == 0);
    newer.firstCall = 1;
    EXPECT(tools_get_cpu_info(newer) == 0);
    tools_testLog(QLatin1String("started"), true);
    EXPECT(QFile::exists(QLatin1String("testLog.log")));

    UReadWriteLock lock;
    EXPECT(lock.lockForRead() == 0 && lock.unlock() == 0 && lock.lockForWrite() == 0 && lock.unlock() == 0);
    EXPECT(lock.destroyLock() == 0 && lock.initLock() == 0);

    int runs = 0;
    const auto count = [](void *argument) {
        ++*static_cast<int *>(argument);
    };
    UTimer timer(count, &runs, 100, 2, false);
    timer.setTimeID(5);
    timer.setDelayCB(timer.getDelayCB());
    timer.setCycleTime(50);
    timer.Start();
    timer.Pause();
    timer.Start();
    long long elapsed = 1000;
    EXPECT(timer.doTask(elapsed) == 3 && timer.doTaskNow() == 1 && runs == 2);
    timer.Stop();
    UTimer::MsecSleep(1);
    EXPECT(UTimer::MsecOfTime() > 0 && typeid(timer) == typeid(UTimer));
    EXPECT(tools_deleteDir(folder) && !QFile::exists(folder + QLatin1String("/table.csv")));
}

template <typename Widget>
void meta(Widget &widget)
{
    EXPECT(widget.Widget::metaObject() == &Widget::staticMetaObject && typeid(widget) == typeid(Widget));
    EXPECT(widget.Widget::qt_metacast(Widget::staticMetaObject.className()) == &widget);
    EXPECT(widget.Widget::qt_metacall(QMetaObject::InvokeMetaMethod, 10000, nullptr) < 10000);
}

void widgets(const QString &folder)
{
    FileBrowser browser;
    browser.setTitle(QLatin1String("Recipes"));
    browser.setBroType(FileBro_Folder);
    browser.setExtension({QLatin1String("csv")});
    browser.setFileBrowserInfo({{QLatin1String("disk"), folder}});
    browser.reTranslateUI();
    browser.showDir(folder);
    EXPECT(browser.getBroType() == FileBro_Folder && browser.getSelectFile() == QList<QString>{folder});
    browser.fileBro_OK();
    browser.fileBro_Cancel();
    TipsProgressBar overlay;
    overlay.UpdateProgress(10, -1, true, QLatin1String("copying"));
    ProgressBar progress;
    progress.UpdateProgress(1, 10, true, QString(), false);
    progress.OnCancel();
    MyMessagebox notice{QString()};
    notice.setText(QLatin1String("saved"), 3);
    notice.OnCancel();
    Notice(QString()).shown();
    HMIMessageBox question(nullptr, QString(), QString(), QLatin1String("OK"), QString());
    question.addOKButton(QLatin1String("Yes"));
    question.addCancelButton(QLatin1String("No"));
    EXPECT(question.buttons().size() == 2 && typeid(question) == typeid(HMIMessageBox));
    Question(nullptr, QString(), QString(), QString(), QString()).closed();
    MyLineEdit line;
    line.focusIn();
    line.focusOut();
    EXPECT(line.sizeHint().width() > 0);
    LineEdit().turn();
    meta(browser);
    meta(overlay);
    meta(progress);
    meta(notice);
    meta(line);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QTemporaryDir folder;
    tools_setSystemRoot(folder.path());
    EXPECT(tools_systemRoot() == folder.path());

    ObjectTree tree;
    object *link =
        ObjectTree::appendChild(ObjectTree::appendChild(tree.root(), QLatin1String("link")), QString());
    ObjectTree::setNumber(link, QLatin1String("linkID"), 1);
    ObjectTree::setText(link, QLatin1String("linkName"), QLatin1String("PLC"));
    object *variables = ObjectTree::appendChild(tree.root(), QLatin1String("macroVarList"));
    ObjectTree::setNumber(variables, QLatin1String("number"), 1);
    ObjectTree::setText(variables, QLatin1String("var0"), QLatin1String("speed,PLC,1,4x,3,0,1,"));
    object *item = ObjectTree::appendChild(tree.root(), QLatin1String("item"));
    ObjectTree::setText(item, QLatin1String("Link"), QLatin1String("PLC"));
    ObjectTree::setText(item, QLatin1String("Block"), QLatin1String("4x"));
    ObjectTree::setNumber(item, QLatin1String("index"), 7);
    ObjectTree::setNumber(item, QLatin1String("length"), 2);
    ObjectTree::setNumber(item, QLatin1String("macroMode"), 1);
    ObjectTree::setText(item, QLatin1String("pressmacro"), QLatin1String("local x = speed\nspeed = 5"));

    static Comm comm;
    sys_base_app_pro record = {};
    record.screenWidth = 480;
    record.screenHeight = 272;
    record.comm = &comm;
    panelkit::simulator::setApplicationRecord(&record);

    registers(item, comm);
    links(tree.root(), item);
    panelkit::simulator::clearEventLibrary();
    macros(tree.root(), item, comm);
    network(folder.path(), comm);
    files(folder.path());
    widgets(folder.path());
    runtime(folder.path());

    panelkit::simulator::clearEventLibrary();
    panelkit::simulator::setApplicationRecord(nullptr);
    if (failures == 0)
        std::puts("everything that is exported answers");
    return failures == 0 ? 0 : 1;
}
