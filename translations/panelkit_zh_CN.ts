<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>FileBrowser</name>
    <message>
        <source>Folder does not exist</source>
        <translation>文件夹不存在</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>文本标签</translation>
    </message>
    <message>
        <source>Return to the previous directory</source>
        <translation>返回上级目录</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>存储位置</translation>
    </message>
    <message>
        <source>Files and folders</source>
        <translation>文件和文件夹</translation>
    </message>
</context>
<context>
    <name>MyMessagebox</name>
    <message>
        <source>ok</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>ProgressBar</name>
    <message>
        <source>Data processing:</source>
        <translation>数据处理中：</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>hide</source>
        <translation>隐藏</translation>
    </message>
    <message>
        <source>processing success!</source>
        <translation>处理成功！</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>The IP address setting is incorrect. Please re-enter it.</source>
        <translation>IP地址设置不正确，请重新输入。</translation>
    </message>
    <message>
        <source>The subnet mask setting is incorrect. Please re-enter it.</source>
        <translation>子网掩码设置不正确，请重新输入。</translation>
    </message>
    <message>
        <source>The gateway setting is incorrect. Please re-enter it.</source>
        <translation>网关设置不正确，请重新输入。</translation>
    </message>
    <message>
        <source>The DNS setting is incorrect. Please re-enter it.</source>
        <translation>DNS设置不正确，请重新输入。</translation>
    </message>
    <message>
        <source>Success.</source>
        <translation>设置成功。</translation>
    </message>
</context>
<context>
    <name>TipsProgressBar</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>First progress</source>
        <translation>第一进度</translation>
    </message>
    <message>
        <source>Second progress</source>
        <translation>第二进度</translation>
    </message>
</context>
</TS>
