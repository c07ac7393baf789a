<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AddressExplanation</name>
    <message>
        <source>No link is called &quot;%1&quot;. The project has: %2.</source>
        <translation>没有名为“%1”的连接。工程中有：%2。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; before the &quot;/&quot; is no link number.</source>
        <translation>“/”前面的“%1”不是连接编号。</translation>
    </message>
    <message>
        <source>There is no link %1. The project has: %2.</source>
        <translation>没有连接%1。工程中有：%2。</translation>
    </message>
    <message>
        <source>%1 holds words. Bits of the internal storage are in LB.</source>
        <translation>%1存放字。内部存储区的位在LB中。</translation>
    </message>
    <message>
        <source>%1 holds bits. Words of the internal storage are in LW and RWI.</source>
        <translation>%1存放位。内部存储区的字在LW和RWI中。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no whole number.</source>
        <translation>“%1”不是整数。</translation>
    </message>
    <message>
        <source>%1 is not asked: its addresses name their station, and &quot;%2&quot; is none from %3 to %4.</source>
        <translation>未询问%1：其地址须注明站号，而“%2”不是%3到%4之间的站号。</translation>
    </message>
    <message>
        <source>%1 has no block &quot;%2&quot;. It has: %3.</source>
        <translation>%1没有寄存器区“%2”。它有：%3。</translation>
    </message>
    <message>
        <source>%1 has no driver that could check the address; it would be %2.</source>
        <translation>%1没有可检查该地址的驱动；驱动文件应为%2。</translation>
    </message>
    <message>
        <source>There is no item that the address could be written to.</source>
        <translation>没有可写入该地址的元件。</translation>
    </message>
    <message>
        <source>Link %1 (&quot;%2&quot;)</source>
        <translation>连接%1（“%2”）</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>%1 does not have %2 registers in a row.</source>
        <translation>%1没有连续的%2个寄存器。</translation>
    </message>
    <message>
        <source>%1 takes the numbers %2 to %3.</source>
        <translation>%1的编号范围是%2到%3。</translation>
    </message>
    <message>
        <source>%1 takes the numbers %2 to %3 for %4 registers in a row.</source>
        <translation>连续%4个寄存器时，%1的编号范围是%2到%3。</translation>
    </message>
    <message>
        <source>%1 takes %2 to %3.</source>
        <translation>%1的范围是%2到%3。</translation>
    </message>
    <message>
        <source>%1 holds words, not bits.</source>
        <translation>%1存放字，不存放位。</translation>
    </message>
    <message>
        <source>%1 holds bits, not words.</source>
        <translation>%1存放位，不存放字。</translation>
    </message>
    <message>
        <source>%1 has no number %2.</source>
        <translation>%1没有编号%2。</translation>
    </message>
    <message>
        <source>The driver does not know the block &quot;%1&quot;.</source>
        <translation>驱动不认识寄存器区“%1”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number of %2.</source>
        <translation>“%1”不是%2的编号。</translation>
    </message>
    <message>
        <source>Number %1 lies within another register of %2.</source>
        <translation>编号%1位于%2的另一个寄存器之内。</translation>
    </message>
    <message>
        <source>The numbers of %1 are octal: there is no digit 8 or 9.</source>
        <translation>%1的编号是八进制，不能含8或9。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; lacks its bit, or the bit is too high.</source>
        <translation>“%1”缺少位号，或位号过大。</translation>
    </message>
    <message>
        <source>%1 registers from %2 on reach beyond the end of %3.</source>
        <translation>从%2开始的%1个寄存器超出了%3的末尾。</translation>
    </message>
    <message>
        <source>%1: the driver answers with its code %2.</source>
        <translation>%1：驱动返回代码%2。</translation>
    </message>
</context>
<context>
    <name>DeviceKind</name>
    <message>
        <source>gateway box with the IoT runtime</source>
        <translation>带物联网运行环境的网关盒</translation>
    </message>
    <message>
        <source>panel with the IoT runtime</source>
        <translation>带物联网运行环境的触摸屏</translation>
    </message>
    <message>
        <source>panel</source>
        <translation>触摸屏</translation>
    </message>
</context>
<context>
    <name>DriverProblem</name>
    <message>
        <source>There is no such file, or it cannot be read.</source>
        <translation>文件不存在或无法读取。</translation>
    </message>
    <message>
        <source>The file is no shared library.</source>
        <translation>该文件不是共享库。</translation>
    </message>
    <message>
        <source>The library is for another processor.</source>
        <translation>该库适用于其他处理器。</translation>
    </message>
    <message>
        <source>The end of the library is missing: the copy broke off.</source>
        <translation>库文件缺少结尾：复制中断。</translation>
    </message>
    <message>
        <source>The system does not load it: %1</source>
        <translation>系统无法加载：%1</translation>
    </message>
    <message>
        <source>It lacks %1.</source>
        <translation>缺少%1。</translation>
    </message>
</context>
<context>
    <name>LinkStateText</name>
    <message>
        <source>no such link</source>
        <translation>没有该连接</translation>
    </message>
    <message>
        <source>internal</source>
        <translation>内部</translation>
    </message>
    <message>
        <source>without connection</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>idle</source>
        <translation>空闲</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>away</source>
        <translation>无应答</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>connected, but not with station %1</source>
        <translation>已连接，但站%1无应答</translation>
    </message>
</context>
<context>
    <name>MacroText</name>
    <message>
        <source>stopped after %1 instructions</source>
        <translation>执行%1条指令后被停止</translation>
    </message>
    <message>
        <source>stopped after %1 ms</source>
        <translation>运行%1毫秒后被停止</translation>
    </message>
    <message>
        <source>stopped: it needs more than %1 KiB of memory</source>
        <translation>已停止：所需内存超过%1 KiB</translation>
    </message>
    <message>
        <source>cannot write %1 %2 of &quot;%3&quot;, station %4: %5</source>
        <translation>无法写入“%3”站%4的%1 %2：%5</translation>
    </message>
    <message>
        <source>cannot read %1 %2 of &quot;%3&quot;, station %4: %5</source>
        <translation>无法读取“%3”站%4的%1 %2：%5</translation>
    </message>
    <message>
        <source>the value is not a number (NaN)</source>
        <translation>该值不是数字（NaN）</translation>
    </message>
    <message>
        <source>it holds no BCD number</source>
        <translation>其内容不是BCD数</translation>
    </message>
    <message>
        <source>(what else it prints is left out)</source>
        <translation>（其余输出已省略）</translation>
    </message>
</context>
<context>
    <name>NetworkWarning</name>
    <message>
        <source>The IP address %1 is none that a panel can have.</source>
        <translation>触摸屏不能使用IP地址%1。</translation>
    </message>
    <message>
        <source>The gateway %1 is the panel itself.</source>
        <translation>网关%1就是触摸屏自身。</translation>
    </message>
    <message>
        <source>The subnet mask 0.0.0.0 makes every address a neighbour.</source>
        <translation>子网掩码0.0.0.0会使所有地址都成为同网段地址。</translation>
    </message>
    <message>
        <source>The subnet mask %1 has holes: its ones must all stand before its zeros.</source>
        <translation>子网掩码%1不连续：所有的1必须在0之前。</translation>
    </message>
    <message>
        <source>The IP address %1 is the address of the network itself.</source>
        <translation>IP地址%1是网络本身的地址。</translation>
    </message>
    <message>
        <source>The IP address %1 is the broadcast address of its network.</source>
        <translation>IP地址%1是所在网络的广播地址。</translation>
    </message>
    <message>
        <source>The gateway %1 lies outside of the panel&apos;s subnet: nothing beyond it can be reached.</source>
        <translation>网关%1不在触摸屏的子网内：无法访问网关之外的设备。</translation>
    </message>
    <message>
        <source>The gateway %1 is the address of the network itself.</source>
        <translation>网关%1是网络本身的地址。</translation>
    </message>
    <message>
        <source>The gateway %1 is the broadcast address of its network.</source>
        <translation>网关%1是所在网络的广播地址。</translation>
    </message>
</context>
<context>
    <name>ProjectFinding</name>
    <message>
        <source>The project gives the index %1, the address has %2.</source>
        <translation>工程给出的索引是%1，而该地址的索引是%2。</translation>
    </message>
</context>
<context>
    <name>TransferText</name>
    <message>
        <source>done</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>there is no such link</source>
        <translation>没有该连接</translation>
    </message>
    <message>
        <source>the link is without connection</source>
        <translation>该连接未接通</translation>
    </message>
    <message>
        <source>there is no such register</source>
        <translation>没有该寄存器</translation>
    </message>
    <message>
        <source>the register cannot be written</source>
        <translation>该寄存器不可写</translation>
    </message>
    <message>
        <source>the link was busy for the whole time-out</source>
        <translation>连接在整个超时时间内忙</translation>
    </message>
    <message>
        <source>the PLC is away</source>
        <translation>PLC无应答</translation>
    </message>
    <message>
        <source>no connection to the PLC: %1</source>
        <translation>无法连接PLC：%1</translation>
    </message>
    <message>
        <source>the PLC did not answer in time</source>
        <translation>PLC未及时应答</translation>
    </message>
    <message>
        <source>the PLC closed the connection</source>
        <translation>PLC关闭了连接</translation>
    </message>
    <message>
        <source>the PLC answered another request</source>
        <translation>PLC应答了其他请求</translation>
    </message>
    <message>
        <source>another station answered</source>
        <translation>其他站应答了</translation>
    </message>
    <message>
        <source>the PLC&apos;s answer does not fit the request</source>
        <translation>PLC的应答与请求不符</translation>
    </message>
    <message>
        <source>the link was taken down</source>
        <translation>连接已停用</translation>
    </message>
    <message>
        <source>the PLC refuses (exception %1)</source>
        <translation>PLC拒绝（异常%1）</translation>
    </message>
    <message>
        <source>the PLC refuses (exception %1: %2)</source>
        <translation>PLC拒绝（异常%1：%2）</translation>
    </message>
</context>
<context>
    <name>panelkit::simulator::Keypad</name>
    <message>
        <source>Space</source>
        <translation>空格</translation>
    </message>
    <message>
        <source>ABC</source>
        <translation>大写</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清空</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>panelkit::simulator::OperatePage</name>
    <message>
        <source>Operate</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>The project has no item with a macro.</source>
        <translation>工程中没有带宏的元件。</translation>
    </message>
    <message>
        <source>A button&apos;s macro runs when it is pressed, released, or both.</source>
        <translation>按下或松开按钮时运行其宏。</translation>
    </message>
    <message>
        <source>%1: done</source>
        <translation>%1：完成</translation>
    </message>
    <message>
        <source>%1: ended in line %2: %3</source>
        <translation>%1：在第%2行结束：%3</translation>
    </message>
    <message>
        <source>%1: ended: %2</source>
        <translation>%1：已结束：%2</translation>
    </message>
</context>
<context>
    <name>panelkit::simulator::RuntimeNotices</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>panelkit::simulator::ValuesPage</name>
    <message>
        <source>Values</source>
        <translation>数值</translation>
    </message>
</context>
</TS>
