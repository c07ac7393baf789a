<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>panelkit::simulator::ValuesPage</name>
    <message>
        <source>Values</source>
        <translation>数值</translation>
    </message>
</context>
</TS>
