<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>panelkit::simulator::AddressPage</name>
    <message>
        <source>Address</source>
        <translation>地址校验</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>Block</source>
        <translation>寄存器区</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>Access</source>
        <translation>访问方式</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>长度</translation>
    </message>
    <message>
        <source>Word</source>
        <translation>字</translation>
    </message>
    <message>
        <source>Bit</source>
        <translation>位</translation>
    </message>
    <message>
        <source>On screens</source>
        <translation>画面显示</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>索引</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>站号</translation>
    </message>
    <message>
        <source>Type a block and a number.</source>
        <translation>请输入寄存器区和编号。</translation>
    </message>
    <message>
        <source>The number of the link stands before the block with &quot;/&quot;, a station with &quot;#&quot;: 2/3#4x.</source>
        <translation>寄存器区前可加连接号和“/”，再加站号和“#”，例如 2/3#4x。</translation>
    </message>
    <message>
        <source>Refused</source>
        <translation>地址无效</translation>
    </message>
    <message>
        <source>The length is a whole number from 1 on.</source>
        <translation>长度必须是不小于 1 的整数。</translation>
    </message>
    <message>
        <source>Valid</source>
        <translation>地址有效</translation>
    </message>
    <message>
        <source>Passes unchecked</source>
        <translation>未校验，放行</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
</context>
<context>
    <name>panelkit::simulator::DevicePage</name>
    <message>
        <source>no parity</source>
        <translation>无校验</translation>
    </message>
    <message>
        <source>odd parity</source>
        <translation>奇校验</translation>
    </message>
    <message>
        <source>even parity</source>
        <translation>偶校验</translation>
    </message>
    <message>
        <source>%1, in the project %2</source>
        <translation>%1（工程中为 %2）</translation>
    </message>
    <message>
        <source>%1, %2 baud, %3 data bits, %4, stop bits: %5</source>
        <translation>%1，波特率 %2，数据位 %3，%4，停止位 %5</translation>
    </message>
    <message>
        <source>station %1, every %2 ms, time-out %3 ms, retries: %4</source>
        <translation>站号 %1，轮询间隔 %2 ms，超时 %3 ms，重试 %4 次</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>设备</translation>
    </message>
    <message>
        <source>CPU load</source>
        <translation>CPU负载</translation>
    </message>
    <message>
        <source>Free memory</source>
        <translation>可用内存</translation>
    </message>
    <message>
        <source>Disk</source>
        <translation>磁盘容量</translation>
    </message>
    <message>
        <source>Free on disk</source>
        <translation>磁盘可用</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>型号</translation>
    </message>
    <message>
        <source>IoT version</source>
        <translation>IoT版本</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>函数库</translation>
    </message>
    <message>
        <source>Links</source>
        <translation>连接</translation>
    </message>
    <message>
        <source>not set</source>
        <translation>未设置</translation>
    </message>
    <message>
        <source>A panel counts memory to 4 GiB and begins again; here %1 MiB are free.</source>
        <translation>触摸屏的内存计数满 4 GiB 后从零重新开始；本机实际可用 %1 MiB。</translation>
    </message>
</context>
<context>
    <name>panelkit::simulator::ExportPage</name>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>内容</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>当前值</translation>
    </message>
    <message>
        <source>History</source>
        <translation>历史</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>CSV</source>
        <translation>CSV</translation>
    </message>
    <message>
        <source>PDF</source>
        <translation>PDF</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Choose...</source>
        <translation>选择…</translation>
    </message>
    <message>
        <source>Choose the folder</source>
        <translation>选择文件夹</translation>
    </message>
    <message>
        <source>Folder for the export</source>
        <translation>选择导出文件夹</translation>
    </message>
    <message>
        <source>Internal storage</source>
        <translation>内部存储</translation>
    </message>
    <message>
        <source>USB disk</source>
        <translation>U盘</translation>
    </message>
    <message>
        <source>The history has %1 rows.</source>
        <translation>历史记录共 %1 行。</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>地址</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Writing...</source>
        <translation>正在写入…</translation>
    </message>
    <message>
        <source>Writing %1...</source>
        <translation>正在写入 %1…</translation>
    </message>
    <message>
        <source>%1: the last %2 rows of %3, %4 bytes</source>
        <translation>%1：最近 %2 行（共 %3 行），%4 字节</translation>
    </message>
    <message>
        <source>%1: %2 rows, %3 bytes</source>
        <translation>%1：%2 行，%3 字节</translation>
    </message>
    <message>
        <source>%1 is not whole: there is too little room in the folder.</source>
        <translation>%1 不完整：文件夹所在磁盘空间不足。</translation>
    </message>
    <message>
        <source>Nothing can be written to this folder. Choose another one.</source>
        <translation>无法写入该文件夹，请另选一个。</translation>
    </message>
</context>
<context>
    <name>panelkit::simulator::NetworkPage</name>
    <message>
        <source>Network</source>
        <translation>网络</translation>
    </message>
    <message>
        <source>IP address</source>
        <translation>IP地址</translation>
    </message>
    <message>
        <source>Subnet mask</source>
        <translation>子网掩码</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>网关</translation>
    </message>
    <message>
        <source>DNS server</source>
        <translation>DNS服务器</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新读取</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Apply anyway</source>
        <translation>仍要应用</translation>
    </message>
    <message>
        <source>Applying...</source>
        <translation>正在应用…</translation>
    </message>
    <message>
        <source>The IP address is not four numbers from 0 to 255 with dots between.</source>
        <translation>IP地址应为四个 0 至 255 的数，以点分隔。</translation>
    </message>
    <message>
        <source>The subnet mask is not four numbers from 0 to 255 with dots between.</source>
        <translation>子网掩码应为四个 0 至 255 的数，以点分隔。</translation>
    </message>
    <message>
        <source>The gateway is not four numbers from 0 to 255 with dots between.</source>
        <translation>网关应为四个 0 至 255 的数，以点分隔。</translation>
    </message>
    <message>
        <source>The DNS server is not four numbers from 0 to 255 with dots between.</source>
        <translation>DNS服务器应为四个 0 至 255 的数，以点分隔。</translation>
    </message>
    <message>
        <source>The panel now has the IP address %1.</source>
        <translation>触摸屏的 IP地址已设为 %1。</translation>
    </message>
    <message>
        <source>The panel could not store the settings: is its disk full?</source>
        <translation>触摸屏无法保存设置，请检查磁盘是否已满。</translation>
    </message>
</context>
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
        <source>stopped: the record of its accesses needs more than %1 KiB</source>
        <translation>已停止：其访问记录超过%1 KiB</translation>
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
        <source>Connection refused</source>
        <translation>连接被拒绝</translation>
    </message>
    <message>
        <source>Connection timed out</source>
        <translation>连接超时</translation>
    </message>
    <message>
        <source>Connection reset by peer</source>
        <translation>连接被对方复位</translation>
    </message>
    <message>
        <source>Connection aborted</source>
        <translation>连接被中止</translation>
    </message>
    <message>
        <source>Connection broken</source>
        <translation>连接已中断</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>No route to host</source>
        <translation>无法到达主机</translation>
    </message>
    <message>
        <source>Host is down</source>
        <translation>主机已关闭</translation>
    </message>
    <message>
        <source>Network is unreachable</source>
        <translation>网络不可达</translation>
    </message>
    <message>
        <source>Network is down</source>
        <translation>网络已断开</translation>
    </message>
    <message>
        <source>Not the address of a PLC</source>
        <translation>不是有效的PLC地址</translation>
    </message>
    <message>
        <source>Address not available</source>
        <translation>地址不可用</translation>
    </message>
    <message>
        <source>Kind of address not supported</source>
        <translation>不支持该类地址</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>没有权限</translation>
    </message>
    <message>
        <source>Too many open connections</source>
        <translation>打开的连接过多</translation>
    </message>
    <message>
        <source>Out of memory</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>error %1</source>
        <translation>错误%1</translation>
    </message>
    <message>
        <source>Illegal function</source>
        <translation>非法功能码</translation>
    </message>
    <message>
        <source>Illegal data address</source>
        <translation>非法数据地址</translation>
    </message>
    <message>
        <source>Illegal data value</source>
        <translation>非法数据值</translation>
    </message>
    <message>
        <source>Device failure</source>
        <translation>从站设备故障</translation>
    </message>
    <message>
        <source>Accepted, but takes long</source>
        <translation>已接受，处理需较长时间</translation>
    </message>
    <message>
        <source>Device busy</source>
        <translation>从站设备忙</translation>
    </message>
    <message>
        <source>Not possible</source>
        <translation>无法执行</translation>
    </message>
    <message>
        <source>Memory parity error</source>
        <translation>存储器奇偶校验错误</translation>
    </message>
    <message>
        <source>Gateway has no path</source>
        <translation>网关路径不可用</translation>
    </message>
    <message>
        <source>No answer behind the gateway</source>
        <translation>网关后的设备无应答</translation>
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
