<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>QAboutDlg</name>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Vetrix Tool</source>
        <translation>Vetrix工具</translation>
    </message>
</context>
<context>
    <name>VxCheck</name>
    <message>
        <source>Diagnoses whether this PC is fit to run GigE Vision and USB3 Vision cameras with the Orvex SDK, without a window.
Exit status: 0 nothing exceptional, 1 something exceptional, 2 usage error.</source>
        <translation>无窗口诊断本PC是否适合通过Orvex SDK运行GigE Vision和USB3 Vision相机。
退出状态：0 无异常，1 存在异常，2 用法错误。</translation>
    </message>
    <message>
        <source>Diagnose only these item ids, e.g. 1,2,128.</source>
        <translation>仅诊断这些项编号，例如1,2,128。</translation>
    </message>
    <message>
        <source>ids</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>Report format: text or json.</source>
        <translation>报告格式：text或json。</translation>
    </message>
    <message>
        <source>format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>Write the report to this file (the export format: UTF-8, CR LF) instead of stdout.</source>
        <translation>将报告写入此文件（导出格式：UTF-8，CR LF），而不是标准输出。</translation>
    </message>
    <message>
        <source>file</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Add each item&apos;s probe time.</source>
        <translation>附加每一项的检查耗时。</translation>
    </message>
    <message>
        <source>Report language: ENG (default) or CH.</source>
        <translation>报告语言：ENG（默认）或CH。</translation>
    </message>
    <message>
        <source>language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Try &apos;%1 --help&apos;.</source>
        <translation>请尝试“%1 --help”。</translation>
    </message>
    <message>
        <source>Unexpected argument: %1</source>
        <translation>意外的参数：%1</translation>
    </message>
    <message>
        <source>Unknown format &quot;%1&quot;: use text or json.</source>
        <translation>未知格式“%1”：请使用text或json。</translation>
    </message>
    <message>
        <source>Unknown language &quot;%1&quot;: use ENG or CH.</source>
        <translation>未知语言“%1”：请使用ENG或CH。</translation>
    </message>
    <message>
        <source>The Chinese translations are missing; the report is in English.</source>
        <translation>缺少中文翻译文件，报告将使用英文。</translation>
    </message>
    <message>
        <source>Cannot write &quot;%1&quot;.</source>
        <translation>无法写入“%1”。</translation>
    </message>
    <message>
        <source>Compare two JSON reports, A.json B.json (- for a diagnosis run now), and print what differs. Exit status: 0 no grade differs, 1 a grade differs, 2 usage error or unreadable report.</source>
        <translation>比较两份 JSON 报告 A.json B.json（- 表示现在运行一次诊断），并输出不同之处。退出状态：0 没有评级不同，1 有评级不同，2 用法错误或报告无法读取。</translation>
    </message>
    <message>
        <source>a diagnosis run now</source>
        <translation>现在运行的诊断</translation>
    </message>
    <message>
        <source>--compare needs two reports: A.json B.json (- for a diagnosis run now).</source>
        <translation>--compare 需要两份报告：A.json B.json（- 表示现在运行的诊断）。</translation>
    </message>
    <message>
        <source>--repair= needs item ids, e.g. --repair=1,2.</source>
        <translation>--repair= 需要项目编号，例如 --repair=1,2。</translation>
    </message>
    <message>
        <source>--undo= needs a number or an optimisation id from --journal.</source>
        <translation>--undo= 需要 --journal 列出的序号或优化编号。</translation>
    </message>
    <message>
        <source>With --repair or --undo: show the planned changes (old and new value) and change nothing.</source>
        <translation>与 --repair 或 --undo 一起使用：显示计划的更改（旧值和新值），不做任何更改。</translation>
    </message>
    <message>
        <source>Undo the last optimisation, or the one given as --undo=N (its number or id in --journal).</source>
        <translation>撤销上一次优化，或 --undo=N 指定的优化（--journal 中的序号或编号）。</translation>
    </message>
    <message>
        <source>List the journaled optimisations and their changes.</source>
        <translation>列出日志中记录的优化及其更改。</translation>
    </message>
    <message>
        <source>--repair and --undo cannot be combined.</source>
        <translation>--repair 和 --undo 不能同时使用。</translation>
    </message>
    <message>
        <source>--journal cannot be combined with --repair, --undo or --dry-run.</source>
        <translation>--journal 不能与 --repair、--undo 或 --dry-run 同时使用。</translation>
    </message>
    <message>
        <source>--dry-run needs --repair or --undo.</source>
        <translation>--dry-run 需要与 --repair 或 --undo 一起使用。</translation>
    </message>
    <message>
        <source>Item &quot;%1&quot; has no repair here: use %2.</source>
        <translation>项目“%1”在此没有修复方法：请使用 %2。</translation>
    </message>
    <message>
        <source>(absent)</source>
        <translation>（不存在）</translation>
    </message>
    <message>
        <source>Nothing to change.</source>
        <translation>无需更改。</translation>
    </message>
    <message>
        <source>Planned changes: %1</source>
        <translation>计划的更改：%1</translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation>失败：%1</translation>
    </message>
    <message>
        <source>Made: %1, failed: %2.</source>
        <translation>已完成：%1，失败：%2。</translation>
    </message>
    <message>
        <source>Optimisation %1 is journaled; undo it with: vetrix-check --undo=%1</source>
        <translation>优化 %1 已记入日志；撤销命令：vetrix-check --undo=%1</translation>
    </message>
    <message>
        <source>No optimisation &quot;%1&quot; in the journal: see --journal.</source>
        <translation>日志中没有优化“%1”：请查看 --journal。</translation>
    </message>
    <message>
        <source>Nothing to undo.</source>
        <translation>没有可撤销的优化。</translation>
    </message>
    <message>
        <source>Undoing optimisation %1.</source>
        <translation>正在撤销优化 %1。</translation>
    </message>
    <message>
        <source>%1 of %2 changes made</source>
        <translation>已完成 %1/%2 项更改</translation>
    </message>
    <message>
        <source>(undoes %1)</source>
        <translation>（撤销 %1）</translation>
    </message>
    <message>
        <source>(undone)</source>
        <translation>（已撤销）</translation>
    </message>
    <message>
        <source>The journal is empty.</source>
        <translation>日志为空。</translation>
    </message>
    <message>
        <source>Repairs from the command line are available on Linux only.</source>
        <translation>命令行修复仅在 Linux 上可用。</translation>
    </message>
    <message>
        <source>No USB host controller was found.</source>
        <translation>未找到USB主控制器。</translation>
    </message>
    <message>
        <source>The USB tree could not be read (the probe library is missing).</source>
        <translation>无法读取 USB 树(缺少探测库)。</translation>
    </message>
    <message>
        <source>Usage: %1 --usb-tree [--format text|json]</source>
        <translation>用法:%1 --usb-tree [--format text|json]</translation>
    </message>
    <message>
        <source>Repair the exceptional items that have a planned repair, or only those given as --repair=IDS. Every change is journaled and can be undone.</source>
        <translation>修复有计划修复的异常项目，或仅修复 --repair=IDS 指定的项目。每项更改都记入日志，可以撤销。</translation>
    </message>
</context>
<context>
    <name>VxCheckReport</name>
    <message>
        <source>Unknown item &quot;%1&quot;. Items: %2.</source>
        <translation>未知项“%1”。可用项：%2。</translation>
    </message>
    <message>
        <source>Probe times:</source>
        <translation>检查耗时：</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>合计</translation>
    </message>
    <message>
        <source>Total without the SDK file walk</source>
        <translation>合计（不含SDK文件遍历）</translation>
    </message>
</context>
<context>
    <name>VxEnvCheckDlg</name>
    <message>
        <source>Environment Variables</source>
        <translation>环境变量</translation>
    </message>
    <message>
        <source>Exception</source>
        <translation>异常</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Repairing environment variables...</source>
        <translation>正在修复环境变量...</translation>
    </message>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The environment variables were not repaired: administrator rights are needed and were not granted.</source>
        <translation>环境变量未修复：需要管理员权限，但未获授权。</translation>
    </message>
    <message>
        <source>The environment variables were not repaired: the repair helper refused the values.</source>
        <translation>环境变量未修复：修复助手拒绝了这些值。</translation>
    </message>
    <message>
        <source>The environment variables could not be written. Nothing was changed.</source>
        <translation>无法写入环境变量，未做任何更改。</translation>
    </message>
    <message>
        <source>Variable Name</source>
        <translation>变量名</translation>
    </message>
    <message>
        <source>Variable Value</source>
        <translation>变量值</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>The environment variables were not repaired: the request for administrator rights could not be started.</source>
        <translation>环境变量未修复：无法发起管理员权限请求。</translation>
    </message>
    <message>
        <source>The environment variables were not repaired: the program does not run as administrator. Please start it again as administrator.</source>
        <translation>环境变量未修复：程序未以管理员身份运行。请以管理员身份重新启动程序。</translation>
    </message>
    <message>
        <source>Next login</source>
        <translation>下次登录</translation>
    </message>
    <message>
        <source>Set machine-wide to &quot;%1&quot;. It takes effect at the next login.</source>
        <translation>已在系统范围设置为“%1”，将在下次登录时生效。</translation>
    </message>
</context>
<context>
    <name>VxGrabDumpTool</name>
    <message>
        <source>Acquire Dump Files</source>
        <translation>获取Dump文件</translation>
    </message>
    <message>
        <source>Dump File Saving Path:</source>
        <translation>Dump文件保存路径：</translation>
    </message>
    <message>
        <source>After program crash or Blue Screen of Death, the tool acquires the Dump files and save the files to the specified saving path.</source>
        <translation>程序崩溃或蓝屏后，本工具获取Dump文件并保存到指定的保存路径。</translation>
    </message>
    <message>
        <source>No dump files were found. Nothing was copied to %1.</source>
        <translation>未找到Dump文件，未向%1复制任何文件。</translation>
    </message>
    <message>
        <source>No new dump files were copied to %1.</source>
        <translation>没有新的Dump文件复制到%1。</translation>
    </message>
    <message numerus="yes">
        <source>%n dump file(s) copied to %1.</source>
        <translation>
            <numerusform>已将%n个Dump文件复制到%1。</numerusform>
        </translation>
    </message>
    <message>
        <source>Copied: %1</source>
        <translation>已复制：%1</translation>
    </message>
    <message>
        <source>Already there, left unchanged: %1</source>
        <translation>已存在，保持不变：%1</translation>
    </message>
    <message>
        <source>Could not be copied: %1</source>
        <translation>无法复制：%1</translation>
    </message>
    <message>
        <source>The folder %1 cannot be created. Please choose another saving path.</source>
        <translation>无法创建文件夹%1，请选择其他保存路径。</translation>
    </message>
    <message>
        <source>After a program crash or a kernel crash, the tool acquires the crash dump files and saves them to the specified saving path.</source>
        <translation>程序崩溃或内核崩溃后，该工具获取崩溃转储文件并将其保存到指定的保存路径。</translation>
    </message>
</context>
<context>
    <name>VxJumbPacketDlg</name>
    <message>
        <source>Jumbo Frame Info</source>
        <translation>巨帧信息</translation>
    </message>
    <message>
        <source>Network Interfaces</source>
        <translation>网络接口</translation>
    </message>
    <message>
        <source>Enabled. Value: %1 </source>
        <translation>已启用。值：%1 </translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>已禁用</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Enable Jumbo Frame for All NICs</source>
        <translation>为所有网卡启用巨帧</translation>
    </message>
    <message>
        <source>Enabling jumbo frame...</source>
        <translation>正在启用巨帧...</translation>
    </message>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Jumbo frames were not enabled: administrator rights are needed and were not granted.</source>
        <translation>巨帧未启用：需要管理员权限，但未获授权。</translation>
    </message>
    <message>
        <source>Jumbo frames were not enabled: the repair helper refused the setting.</source>
        <translation>巨帧未启用：修复助手拒绝了该设置。</translation>
    </message>
    <message>
        <source>Jumbo frames could not be enabled on every network interface.</source>
        <translation>无法在所有网络接口上启用巨帧。</translation>
    </message>
    <message>
        <source>Jumbo frames were not enabled: the request for administrator rights could not be started.</source>
        <translation>巨帧未启用：无法发起管理员权限请求。</translation>
    </message>
    <message>
        <source>Jumbo frames were not enabled: the program does not run as administrator. Please start it again as administrator.</source>
        <translation>巨帧未启用：程序未以管理员身份运行。请以管理员身份重新启动程序。</translation>
    </message>
</context>
<context>
    <name>VxMainWindow</name>
    <message>
        <source>Vetrix Tool</source>
        <translation>Vetrix工具</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>User Manual</source>
        <translation>用户手册</translation>
    </message>
    <message>
        <source>Acquire Dump Files</source>
        <translation>获取Dump文件</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Memory: %1%</source>
        <translation>内存：%1%</translation>
    </message>
    <message>
        <source>CPU: %1%</source>
        <translation>CPU：%1%</translation>
    </message>
    <message>
        <source>The diagnosis is still running. Wait until it has finished.</source>
        <translation>诊断仍在进行中，请等待诊断完成。</translation>
    </message>
    <message>
        <source>No diagnosis has run yet. Start the diagnosis first.</source>
        <translation>尚未进行诊断，请先开始诊断。</translation>
    </message>
    <message>
        <source>Export JSON Report…</source>
        <translation>导出 JSON 报告…</translation>
    </message>
    <message>
        <source>Compare with Report…</source>
        <translation>与报告比较…</translation>
    </message>
    <message>
        <source>Open Report</source>
        <translation>打开报告</translation>
    </message>
    <message>
        <source>JSON Report</source>
        <translation>JSON 报告</translation>
    </message>
    <message>
        <source>All Files</source>
        <translation>所有文件</translation>
    </message>
    <message>
        <source>Export JSON Report</source>
        <translation>导出 JSON 报告</translation>
    </message>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The file cannot be written.</source>
        <translation>无法写入该文件。</translation>
    </message>
    <message>
        <source>The JSON report is exported.</source>
        <translation>JSON 报告已导出。</translation>
    </message>
    <message>
        <source>Undo Last Optimization</source>
        <translation>撤销上次优化</translation>
    </message>
    <message>
        <source>Optimizations are not recorded on this system, so they cannot be undone here.</source>
        <translation>此系统不记录优化，因此无法在此撤销。</translation>
    </message>
    <message>
        <source>There is no optimization to undo.</source>
        <translation>没有可撤销的优化。</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>%1: restored</source>
        <translation>%1：已恢复</translation>
    </message>
    <message>
        <source>%1: not restored (%2)</source>
        <translation>%1：未恢复（%2）</translation>
    </message>
    <message>
        <source>The last optimization was undone.</source>
        <translation>上次优化已撤销。</translation>
    </message>
    <message>
        <source>The last optimization was undone only in part.</source>
        <translation>上次优化仅部分撤销。</translation>
    </message>
    <message>
        <source>Diagnose again to see the current state.</source>
        <translation>请重新诊断以查看当前状态。</translation>
    </message>
</context>
<context>
    <name>VxNetRateDlg</name>
    <message>
        <source>Unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>Line Rate</source>
        <translation>线速</translation>
    </message>
    <message>
        <source>Network Interfaces</source>
        <translation>网络接口</translation>
    </message>
    <message>
        <source>The line rate of the NIC is lower than 1Gbps. Please check if the NIC, network, or the switch is abnormal.</source>
        <translation>网卡线速低于1Gbps，请检查网卡、网络或交换机是否异常。</translation>
    </message>
</context>
<context>
    <name>VxOneKeyResult</name>
    <message>
        <source>SDK File Saving Path</source>
        <translation>SDK文件存放路径</translation>
    </message>
    <message>
        <source>SDK Environment Variables</source>
        <translation>SDK环境变量</translation>
    </message>
    <message>
        <source>GigE Vision Driver Status</source>
        <translation>GigE Vision驱动状态</translation>
    </message>
    <message>
        <source>USB3 Vision Driver Status</source>
        <translation>USB3 Vision驱动状态</translation>
    </message>
    <message>
        <source>GigE Driver Check in Network</source>
        <translation>网络中GigE驱动检查</translation>
    </message>
    <message>
        <source>USB3.0 Controller Driver Version</source>
        <translation>USB3.0控制器驱动版本</translation>
    </message>
    <message>
        <source>The num of Driver</source>
        <translation>驱动数量</translation>
    </message>
    <message>
        <source>Network Line Rate</source>
        <translation>网络线速</translation>
    </message>
    <message>
        <source>Jumbo Frame</source>
        <translation>巨帧</translation>
    </message>
    <message>
        <source>USB Controller Info</source>
        <translation>USB控制器信息</translation>
    </message>
    <message>
        <source>PC Firewall Status</source>
        <translation>PC防火墙状态</translation>
    </message>
    <message>
        <source>Systm Info</source>
        <translation>系统信息</translation>
    </message>
    <message>
        <source>SDK Diagnosis</source>
        <translation>SDK诊断</translation>
    </message>
    <message>
        <source>Driver Diagnosis</source>
        <translation>驱动诊断</translation>
    </message>
    <message>
        <source>PC System Diagnosis</source>
        <translation>PC系统诊断</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Check and Clear</source>
        <translation>检查并清除</translation>
    </message>
    <message>
        <source>Check and Upgrade</source>
        <translation>检查并升级</translation>
    </message>
    <message>
        <source>View Solution</source>
        <translation>查看解决方案</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Install Driver</source>
        <translation>安装驱动</translation>
    </message>
    <message>
        <source>Check and Repair</source>
        <translation>检查并修复</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>检查</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>已禁用</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>已启用</translation>
    </message>
    <message>
        <source>Installed</source>
        <translation>已安装</translation>
    </message>
    <message>
        <source>Diagnosis result is exported.</source>
        <translation>诊断结果已导出。</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source> No other SDK files were found</source>
        <translation> 未发现其他SDK文件</translation>
    </message>
    <message>
        <source>The Other SDK Files :</source>
        <translation>其他SDK文件：</translation>
    </message>
    <message>
        <source>Environment Variables are correct</source>
        <translation>环境变量正确</translation>
    </message>
    <message>
        <source>The following environment variables are exceptional:</source>
        <translation>以下环境变量异常：</translation>
    </message>
    <message>
        <source>GigE driver is installed.</source>
        <translation>GigE驱动已安装。</translation>
    </message>
    <message>
        <source> GigE driver is not installed.</source>
        <translation> GigE驱动未安装。</translation>
    </message>
    <message>
        <source>USB driver is installed.</source>
        <translation>USB驱动已安装。</translation>
    </message>
    <message>
        <source> USB driver is not installed.</source>
        <translation> USB驱动未安装。</translation>
    </message>
    <message>
        <source>Name     : </source>
        <translation>名称     : </translation>
    </message>
    <message>
        <source>Provider : </source>
        <translation>提供商   : </translation>
    </message>
    <message>
        <source>Date     : </source>
        <translation>日期     : </translation>
    </message>
    <message>
        <source>Version  : </source>
        <translation>版本     : </translation>
    </message>
    <message>
        <source>The Jumbo Packet is enabled(value = %1)</source>
        <translation>巨帧已启用（值 = %1）</translation>
    </message>
    <message>
        <source>The Jumbo Packet isn&apos;t enabled</source>
        <translation>巨帧未启用</translation>
    </message>
    <message>
        <source>The firewall hasn&apos;t been opened</source>
        <translation>防火墙未开启</translation>
    </message>
    <message>
        <source>The firewall has been opened</source>
        <translation>防火墙已开启</translation>
    </message>
    <message>
        <source>CPU               : </source>
        <translation>处理器            : </translation>
    </message>
    <message>
        <source>CPU Core Number   : </source>
        <translation>处理器核心数      : </translation>
    </message>
    <message>
        <source>Available Memory  : </source>
        <translation>可用内存          : </translation>
    </message>
    <message>
        <source>Endianess         : </source>
        <translation>字节序            : </translation>
    </message>
    <message>
        <source>Operating System  : </source>
        <translation>操作系统          : </translation>
    </message>
    <message>
        <source>Graphic Chipset   : </source>
        <translation>显卡芯片组        : </translation>
    </message>
    <message>
        <source>Screen Resolution : </source>
        <translation>屏幕分辨率        : </translation>
    </message>
    <message>
        <source>Not repaired: administrator rights were not granted.</source>
        <translation>未修复：未获得管理员权限。</translation>
    </message>
    <message>
        <source>Not repaired: administrator rights could not be requested.</source>
        <translation>未修复：无法请求管理员权限。</translation>
    </message>
    <message>
        <source>Not repaired: the change was not accepted.</source>
        <translation>未修复：更改未被接受。</translation>
    </message>
    <message>
        <source>Not repaired: the change could not be made.</source>
        <translation>未修复：无法完成更改。</translation>
    </message>
    <message>
        <source>The following environment variables are set and take effect at the next login:</source>
        <translation>以下环境变量已设置，将在下次登录时生效：</translation>
    </message>
    <message>
        <source>Not available: this check cannot read the system below %1.</source>
        <translation>不可用：此项检查无法读取 %1 下的系统。</translation>
    </message>
    <message>
        <source>Not available: this check has no probe on this platform.</source>
        <translation>不可用：此平台上没有该项检查。</translation>
    </message>
    <message>
        <source>No USB host controller was found.</source>
        <translation>未找到USB主控制器。</translation>
    </message>
    <message>
        <source>USB Buffer Memory</source>
        <translation>USB 缓冲内存</translation>
    </message>
    <message>
        <source>Network Receive Buffers</source>
        <translation>网络接收缓冲区</translation>
    </message>
    <message>
        <source>Reverse-Path Filter</source>
        <translation>反向路径过滤</translation>
    </message>
    <message>
        <source>GenTL Producers</source>
        <translation>GenTL 生产者</translation>
    </message>
    <message>
        <source>USB3 Vision Link</source>
        <translation>USB3 Vision 链路</translation>
    </message>
    <message>
        <source>Camera Host Tuning</source>
        <translation>相机主机调优</translation>
    </message>
    <message>
        <source>not a program library</source>
        <translation>不是程序库</translation>
    </message>
    <message>
        <source>%1-bit %2 program for %3, not a library</source>
        <translation>%3 平台的 %1 位 %2 程序，不是库</translation>
    </message>
    <message>
        <source>%1-bit %2 library for %3</source>
        <translation>%3 平台的 %1 位 %2 库</translation>
    </message>
    <message>
        <source>%1 is not set: 64-bit programs find no GenTL producer. Set it to the folders of the installed producers.</source>
        <translation>%1 未设置：64 位程序找不到 GenTL 生产者。请将其设置为已安装生产者所在的文件夹。</translation>
    </message>
    <message>
        <source>Folder %1 in %2 does not exist: remove it from %2 or install the producer there.</source>
        <translation>%2 中的文件夹 %1 不存在：请将其从 %2 中删除，或在该处安装生产者。</translation>
    </message>
    <message>
        <source>Folder %1 in %2 holds no GenTL producer (.cti): remove it from %2 or install the producer there.</source>
        <translation>%2 中的文件夹 %1 不含 GenTL 生产者（.cti）：请将其从 %2 中删除，或在该处安装生产者。</translation>
    </message>
    <message>
        <source>GenTL producer: %1 (%2).</source>
        <translation>GenTL 生产者：%1（%2）。</translation>
    </message>
    <message>
        <source>%1 cannot be read: check its permissions.</source>
        <translation>无法读取 %1：请检查其权限。</translation>
    </message>
    <message>
        <source>%1 is %2: replace it with the producer&apos;s library.</source>
        <translation>%1 是%2：请用生产者的库替换它。</translation>
    </message>
    <message>
        <source>%1 is a %2, but %3 needs a %4: install the matching producer.</source>
        <translation>%1 是%2，但 %3 需要%4：请安装匹配的生产者。</translation>
    </message>
    <message>
        <source>GenTL producer %1 is in more than one folder of %2 (%3): keep one copy.</source>
        <translation>GenTL 生产者 %1 位于 %2 的多个文件夹中（%3）：请只保留一份。</translation>
    </message>
    <message>
        <source>off</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>strict</source>
        <translation>严格</translation>
    </message>
    <message>
        <source>loose</source>
        <translation>宽松</translation>
    </message>
    <message>
        <source>This system has no reverse-path filter setting.</source>
        <translation>此系统没有反向路径过滤设置。</translation>
    </message>
    <message>
        <source>%1 cannot be read.</source>
        <translation>无法读取 %1。</translation>
    </message>
    <message>
        <source>The reverse-path filter of %1 cannot be read.</source>
        <translation>无法读取 %1 的反向路径过滤设置。</translation>
    </message>
    <message>
        <source>The reverse-path filter of %1 is strict (all: %2, %1: %3): replies from cameras on other subnets are dropped.</source>
        <translation>%1 的反向路径过滤为严格模式（all：%2，%1：%3）：来自其他子网相机的应答会被丢弃。</translation>
    </message>
    <message>
        <source>The reverse-path filter of %1 is %2.</source>
        <translation>%1 的反向路径过滤为%2。</translation>
    </message>
    <message>
        <source>No physical network adapter found.</source>
        <translation>未找到物理网络适配器。</translation>
    </message>
    <message>
        <source>%1 is %2; cameras need at least %3.</source>
        <translation>%1 为 %2；相机至少需要 %3。</translation>
    </message>
    <message>
        <source>%1 is %2.</source>
        <translation>%1 为 %2。</translation>
    </message>
    <message>
        <source>Receive rings are read from the running system only: not available.</source>
        <translation>接收环只能从正在运行的系统读取：不可用。</translation>
    </message>
    <message>
        <source>Receive buffers of %1: the driver offers no setting.</source>
        <translation>%1 的接收缓冲区：驱动未提供此设置。</translation>
    </message>
    <message>
        <source>Receive ring of %1: not available (%2).</source>
        <translation>%1 的接收环：不可用（%2）。</translation>
    </message>
    <message>
        <source>Receive buffers of %1: %2 of at most %3.</source>
        <translation>%1 的接收缓冲区：%2，最大可为 %3。</translation>
    </message>
    <message>
        <source>Receive ring of %1: %2 of at most %3 entries.</source>
        <translation>%1 的接收环：%2 项，最多可为 %3 项。</translation>
    </message>
    <message>
        <source>Receive buffers of %1: %2 (the maximum).</source>
        <translation>%1 的接收缓冲区：%2（已为最大值）。</translation>
    </message>
    <message>
        <source>Receive ring of %1: %2 entries (the maximum).</source>
        <translation>%1 的接收环：%2 项（已为最大值）。</translation>
    </message>
    <message>
        <source>Interrupt moderation of %1 is off: every frame costs an interrupt.</source>
        <translation>%1 的中断节流已关闭：每一帧都会产生一次中断。</translation>
    </message>
    <message>
        <source>Interrupt moderation of %1 is on.</source>
        <translation>%1 的中断节流已开启。</translation>
    </message>
    <message>
        <source>Cannot read %1.</source>
        <translation>无法读取 %1。</translation>
    </message>
    <message>
        <source>Cannot write %1: %2</source>
        <translation>无法写入 %1：%2</translation>
    </message>
    <message>
        <source>%1 did not take the value %2 (it reads %3).</source>
        <translation>%1 未接受值 %2（读回为 %3）。</translation>
    </message>
    <message>
        <source>Cannot write %1; the running value was set back.</source>
        <translation>无法写入 %1；运行中的值已恢复原值。</translation>
    </message>
    <message>
        <source>The change is not one this program makes: %1 %2 = %3</source>
        <translation>本程序不进行此项更改：%1 %2 = %3</translation>
    </message>
    <message>
        <source>The receive ring of %1 can be set on the running system only.</source>
        <translation>%1 的接收环只能在正在运行的系统上设置。</translation>
    </message>
    <message>
        <source>Cannot set the receive ring of %1: %2</source>
        <translation>无法设置 %1 的接收环：%2</translation>
    </message>
    <message>
        <source>an unknown speed</source>
        <translation>未知速率</translation>
    </message>
    <message>
        <source>1.5 Mbit/s (Low Speed)</source>
        <translation>1.5 Mbit/s(低速)</translation>
    </message>
    <message>
        <source>12 Mbit/s (Full Speed)</source>
        <translation>12 Mbit/s(全速)</translation>
    </message>
    <message>
        <source>480 Mbit/s (High Speed)</source>
        <translation>480 Mbit/s(高速)</translation>
    </message>
    <message>
        <source>5 Gbit/s (SuperSpeed)</source>
        <translation>5 Gbit/s(超高速)</translation>
    </message>
    <message>
        <source>%1 Gbit/s (SuperSpeedPlus)</source>
        <translation>%1 Gbit/s(超高速+)</translation>
    </message>
    <message>
        <source>%1 Mbit/s</source>
        <translation>%1 Mbit/s</translation>
    </message>
    <message>
        <source>SuperSpeedPlus</source>
        <translation>超高速+ (SuperSpeedPlus)</translation>
    </message>
    <message>
        <source>SuperSpeed</source>
        <translation>超高速 (SuperSpeed)</translation>
    </message>
    <message>
        <source>The USB tree could not be read (the probe library is missing).</source>
        <translation>无法读取 USB 树(缺少探测库)。</translation>
    </message>
    <message>
        <source>USB3 Vision camera %1 at port %2 runs at %3 although it is capable of %4: it fell back to USB 2 (check the cable, the port and any hub).</source>
        <translation>端口 %2 上的 USB3 Vision 相机 %1 支持 %4,却以 %3 运行:已回落到 USB 2(请检查线缆、端口和集线器)。</translation>
    </message>
    <message>
        <source>USB3 Vision camera %1 at port %2 (%3, capable of %4) is connected behind the USB 2 hub at port %5.</source>
        <translation>端口 %2 上的 USB3 Vision 相机 %1(%3,支持 %4)连接在端口 %5 的 USB 2 集线器之后。</translation>
    </message>
    <message>
        <source>USB3 Vision camera %1 at port %2: %3, capable of %4.</source>
        <translation>端口 %2 上的 USB3 Vision 相机 %1:%3,支持 %4。</translation>
    </message>
    <message>
        <source>Warning: %1 USB3 Vision cameras share the host controller %2 and its bandwidth (ports %3).</source>
        <translation>警告:%1 台 USB3 Vision 相机共用主控制器 %2 及其带宽(端口 %3)。</translation>
    </message>
    <message>
        <source>No USB3 Vision camera is connected.</source>
        <translation>未连接 USB3 Vision 相机。</translation>
    </message>
    <message>
        <source>Information: %1 at port %2: %3, capable of %4.</source>
        <translation>信息:端口 %2 上的 %1:%3,支持 %4。</translation>
    </message>
    <message>
        <source>Information: %1 connected USB devices whose descriptors could not be read were left out.</source>
        <translation>信息:%1 个已连接但无法读取描述符的 USB 设备未列出。</translation>
    </message>
    <message>
        <source>USB selective suspend is enabled in the power plan %1: Windows may suspend a camera between frames.</source>
        <translation>电源计划 %1 中已启用 USB 选择性暂停：Windows 可能在两帧之间挂起相机。</translation>
    </message>
    <message>
        <source>USB selective suspend is disabled in the power plan %1.</source>
        <translation>电源计划 %1 中已禁用 USB 选择性暂停。</translation>
    </message>
    <message>
        <source>The USB selective suspend setting of the active power plan cannot be read.</source>
        <translation>无法读取当前电源计划的 USB 选择性暂停设置。</translation>
    </message>
    <message>
        <source>The USB buffer memory cannot be read (the usbcore module is not loaded).</source>
        <translation>无法读取 USB 缓冲内存（usbcore 模块未加载）。</translation>
    </message>
    <message>
        <source>USB buffer memory (usbfs_memory_mb): unlimited.</source>
        <translation>USB 缓冲内存（usbfs_memory_mb）：不限。</translation>
    </message>
    <message>
        <source>USB buffer memory (usbfs_memory_mb) is %1 MB; USB3 Vision cameras need at least %2 MB.</source>
        <translation>USB 缓冲内存（usbfs_memory_mb）为 %1 MB；USB3 Vision 相机至少需要 %2 MB。</translation>
    </message>
    <message>
        <source>USB buffer memory (usbfs_memory_mb): %1 MB.</source>
        <translation>USB 缓冲内存（usbfs_memory_mb）：%1 MB。</translation>
    </message>
    <message>
        <source>USB3 Vision camera found: %1.</source>
        <translation>发现 USB3 Vision 相机：%1。</translation>
    </message>
    <message>
        <source>USB 3 root hub found: %1.</source>
        <translation>发现 USB 3 根集线器：%1。</translation>
    </message>
    <message>
        <source>No USB 3 controller or USB3 Vision camera found.</source>
        <translation>未发现 USB 3 控制器或 USB3 Vision 相机。</translation>
    </message>
    <message>
        <source>Not repaired: the examined system is not the running one.</source>
        <translation>未修复：所检查的系统不是当前运行的系统。</translation>
    </message>
</context>
<context>
    <name>VxOneKeyResultTree</name>
    <message>
        <source> (%1 Exception(s))</source>
        <translation>（%1项异常）</translation>
    </message>
    <message>
        <source>Installing GigE driver...</source>
        <translation>正在安装GigE驱动...</translation>
    </message>
    <message>
        <source>Installing USB driver...</source>
        <translation>正在安装USB驱动...</translation>
    </message>
</context>
<context>
    <name>VxOneKeyWidget</name>
    <message>
        <source>Diagnosis: %1(%2/%3)</source>
        <translation>诊断：%1（%2/%3）</translation>
    </message>
    <message>
        <source>Optimization: %1(%2/%3)</source>
        <translation>优化：%1（%2/%3）</translation>
    </message>
    <message>
        <source>Vetrix Tool</source>
        <translation>Vetrix工具</translation>
    </message>
    <message>
        <source>Check the PC system, driver, and software running environment.</source>
        <translation>检查PC系统、驱动及软件运行环境。</translation>
    </message>
    <message>
        <source>Start Diagnosis</source>
        <translation>开始诊断</translation>
    </message>
    <message>
        <source>Pause Diagnosis</source>
        <translation>暂停诊断</translation>
    </message>
    <message>
        <source>Stop Diagnosis</source>
        <translation>停止诊断</translation>
    </message>
    <message>
        <source>Diagnosis paused</source>
        <translation>诊断已暂停</translation>
    </message>
    <message>
        <source>Continue Diagnosis</source>
        <translation>继续诊断</translation>
    </message>
    <message>
        <source>Diagnosis aborted.</source>
        <translation>诊断已中止。</translation>
    </message>
    <message>
        <source>Diagnosis process aborted. Please restart diagnosis.</source>
        <translation>诊断过程已中止，请重新诊断。</translation>
    </message>
    <message>
        <source>Optimize Diagnosis</source>
        <translation>一键优化</translation>
    </message>
    <message>
        <source>Diagnose Again</source>
        <translation>重新诊断</translation>
    </message>
    <message>
        <source>Diagnosis completed.</source>
        <translation>诊断完成。</translation>
    </message>
    <message>
        <source>%1 items were diagnosed in %2 second(s).</source>
        <translation>共诊断%1项，用时%2秒。</translation>
    </message>
    <message>
        <source>Pause Optimization</source>
        <translation>暂停优化</translation>
    </message>
    <message>
        <source>Stop Optimization</source>
        <translation>停止优化</translation>
    </message>
    <message>
        <source>Optimization paused</source>
        <translation>优化已暂停</translation>
    </message>
    <message>
        <source>Resume Optimization</source>
        <translation>继续优化</translation>
    </message>
    <message>
        <source>Optimization stopped.</source>
        <translation>优化已停止。</translation>
    </message>
    <message>
        <source>%1 exception(s) are detected. Please optimize the system.</source>
        <translation>检测到%1项异常，请优化系统。</translation>
    </message>
    <message>
        <source>No exception.</source>
        <translation>无异常。</translation>
    </message>
    <message>
        <source>Complete</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>Normal: %1 Item(s)</source>
        <translation>正常：%1项</translation>
    </message>
    <message>
        <source>Serious: %1 Item(s)</source>
        <translation>严重：%1项</translation>
    </message>
    <message>
        <source>Fatal: %1 Item(s)</source>
        <translation>致命：%1项</translation>
    </message>
    <message>
        <source>Stop Optimizing...</source>
        <translation>正在停止优化...</translation>
    </message>
    <message>
        <source>Select File.</source>
        <translation>请选择文件。</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>The file path is too long.</source>
        <translation>文件路径过长。</translation>
    </message>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The file cannot be written.</source>
        <translation>无法写入文件。</translation>
    </message>
    <message>
        <source>No data</source>
        <translation>无数据</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Serious</source>
        <translation>严重</translation>
    </message>
    <message>
        <source>Fatal</source>
        <translation>致命</translation>
    </message>
    <message>
        <source>Optimization will make the following changes. Continue?</source>
        <translation>优化将进行以下更改。是否继续？</translation>
    </message>
    <message>
        <source>%1: will be repaired</source>
        <translation>%1：将被修复</translation>
    </message>
    <message>
        <source>%1: %2: %3 → %4</source>
        <translation>%1：%2：%3 → %4</translation>
    </message>
    <message>
        <source>(not set)</source>
        <translation>（未设置）</translation>
    </message>
    <message>
        <source>(removed)</source>
        <translation>（已移除）</translation>
    </message>
</context>
<context>
    <name>VxOperateThread</name>
    <message>
        <source>File doesn&apos;t exist.</source>
        <translation>文件不存在。</translation>
    </message>
    <message>
        <source>Installation of the driver timed out.</source>
        <translation>驱动安装超时。</translation>
    </message>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The driver was not installed: administrator rights were not granted.</source>
        <translation>驱动未安装：未获得管理员权限。</translation>
    </message>
    <message>
        <source>The driver was not installed: administrator rights could not be requested.</source>
        <translation>驱动未安装：无法请求管理员权限。</translation>
    </message>
    <message>
        <source>The driver was not installed: the installer was not accepted.</source>
        <translation>驱动未安装：安装程序未被接受。</translation>
    </message>
    <message>
        <source>The driver was not installed: the installer could not be started.</source>
        <translation>驱动未安装：无法启动安装程序。</translation>
    </message>
    <message>
        <source>Missing file: %1</source>
        <translation>缺少文件：%1</translation>
    </message>
    <message>
        <source>The driver was not installed: the installer belongs to the examined system image and is not run on this computer.</source>
        <translation>驱动未安装：该安装程序属于所检查的系统镜像，不会在本机上运行。</translation>
    </message>
</context>
<context>
    <name>VxReportCompareDlg</name>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Compare with Report</source>
        <translation>与报告比较</translation>
    </message>
    <message>
        <source>Item / Change</source>
        <translation>项目 / 变化</translation>
    </message>
    <message>
        <source>Fact</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>In the report</source>
        <translation>报告中</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>当前</translation>
    </message>
    <message>
        <source>Report: %1</source>
        <translation>报告：%1</translation>
    </message>
    <message>
        <source>this diagnosis</source>
        <translation>本次诊断</translation>
    </message>
</context>
<context>
    <name>VxReportDiff</name>
    <message>
        <source>%1: an item has no id.</source>
        <translation>%1：有一个项目没有编号。</translation>
    </message>
    <message>
        <source>%1: item %2 is unknown.</source>
        <translation>%1：未知的项目 %2。</translation>
    </message>
    <message>
        <source>%1: item %2 appears twice.</source>
        <translation>%1：项目 %2 出现了两次。</translation>
    </message>
    <message>
        <source>%1: item %2 has an invalid &quot;%3&quot;.</source>
        <translation>%1：项目 %2 的“%3”无效。</translation>
    </message>
    <message>
        <source>%1 is not a JSON report: %2 at byte %3.</source>
        <translation>%1 不是 JSON 报告：第 %3 字节处%2。</translation>
    </message>
    <message>
        <source>%1 is not a vetrix-check report.</source>
        <translation>%1 不是 vetrix-check 报告。</translation>
    </message>
    <message>
        <source>%1 comes from vetrix-check version &quot;%2&quot;; this version compares reports of version %3.x.</source>
        <translation>%1 来自 vetrix-check 版本“%2”；本版本只能比较 %3.x 版本的报告。</translation>
    </message>
    <message>
        <source>%1 has no item list.</source>
        <translation>%1 没有项目列表。</translation>
    </message>
    <message>
        <source>Cannot read &quot;%1&quot;.</source>
        <translation>无法读取“%1”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is too large for a report.</source>
        <translation>“%1”太大，不是有效的报告。</translation>
    </message>
    <message>
        <source>item added</source>
        <translation>新增项目</translation>
    </message>
    <message>
        <source>item removed</source>
        <translation>缺少项目</translation>
    </message>
    <message>
        <source>grade changed</source>
        <translation>评级变化</translation>
    </message>
    <message>
        <source>added</source>
        <translation>新增</translation>
    </message>
    <message>
        <source>removed</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>changed</source>
        <translation>变化</translation>
    </message>
    <message>
        <source>line added</source>
        <translation>新增行</translation>
    </message>
    <message>
        <source>line removed</source>
        <translation>删除行</translation>
    </message>
    <message>
        <source>no grade</source>
        <translation>无评级</translation>
    </message>
    <message>
        <source>normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>exceptional</source>
        <translation>异常</translation>
    </message>
    <message>
        <source>available</source>
        <translation>可用</translation>
    </message>
    <message>
        <source>not available</source>
        <translation>不可用</translation>
    </message>
    <message>
        <source>exceptional, severity %1</source>
        <translation>异常，严重程度 %1</translation>
    </message>
    <message>
        <source>No differences.</source>
        <translation>没有差异。</translation>
    </message>
    <message>
        <source>Items that differ: %1. Grade changes: %2.</source>
        <translation>有差异的项目：%1。评级变化：%2。</translation>
    </message>
    <message>
        <source>Before: %1</source>
        <translation>之前：%1</translation>
    </message>
    <message>
        <source>After: %1</source>
        <translation>之后：%1</translation>
    </message>
</context>
<context>
    <name>VxSDKFileClearDlg</name>
    <message>
        <source>SDK File Info</source>
        <translation>SDK文件信息</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>全部清除</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>The SDK files were not cleared: administrator rights are needed and were not granted.</source>
        <translation>SDK文件未清除：需要管理员权限，但未获授权。</translation>
    </message>
    <message>
        <source>The SDK files were not cleared: the repair helper refused to delete them.</source>
        <translation>SDK文件未清除：修复助手拒绝删除这些文件。</translation>
    </message>
    <message>
        <source>The SDK files could not be deleted.</source>
        <translation>无法删除SDK文件。</translation>
    </message>
    <message>
        <source>SDK files exist in directories such as System32 and SysWow64, which may cause software exception after upgrading software version. Please clear SDK files in directories except the RunningTime directory.</source>
        <translation>System32、SysWow64等目录中存在SDK文件，升级软件版本后可能导致软件异常。请清除除RunningTime目录以外的目录中的SDK文件。</translation>
    </message>
    <message>
        <source>SDK File</source>
        <translation>SDK文件</translation>
    </message>
    <message>
        <source>Saving Path</source>
        <translation>保存路径</translation>
    </message>
    <message>
        <source>Operation</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>SDK files exist in system library folders such as /usr/lib, which may cause software exception after upgrading software version. Please clear the SDK files in these folders; the SDK&apos;s own installation folder is not affected.</source>
        <translation>系统库文件夹（如 /usr/lib）中存在SDK文件，可能导致软件版本升级后出现软件异常。请清除这些文件夹中的SDK文件；SDK自身的安装文件夹不受影响。</translation>
    </message>
    <message>
        <source>The SDK files were not cleared: the request for administrator rights could not be started.</source>
        <translation>SDK文件未清除：无法发起管理员权限请求。</translation>
    </message>
    <message>
        <source>The SDK files were not cleared: the program does not run as administrator. Please start it again as administrator.</source>
        <translation>SDK文件未清除：程序未以管理员身份运行。请以管理员身份重新启动程序。</translation>
    </message>
</context>
<context>
    <name>VxSystemInfoDlg</name>
    <message>
        <source>CPU</source>
        <translation>处理器</translation>
    </message>
    <message>
        <source>CPU Core Number</source>
        <translation>处理器核心数</translation>
    </message>
    <message>
        <source>Available Memory</source>
        <translation>可用内存</translation>
    </message>
    <message>
        <source>Endianess</source>
        <translation>字节序</translation>
    </message>
    <message>
        <source>Operating System</source>
        <translation>操作系统</translation>
    </message>
    <message>
        <source>Graphic Chipset</source>
        <translation>显卡芯片组</translation>
    </message>
    <message>
        <source>Screen Resolution</source>
        <translation>屏幕分辨率</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>System Information</source>
        <translation>系统信息</translation>
    </message>
</context>
<context>
    <name>VxUSBDriverDlg</name>
    <message>
        <source>Driver Name:</source>
        <translation>驱动名称：</translation>
    </message>
    <message>
        <source>Driver Provider:</source>
        <translation>驱动提供商：</translation>
    </message>
    <message>
        <source>Driver&apos;s Latest Update Time:</source>
        <translation>驱动最近更新时间：</translation>
    </message>
    <message>
        <source>Driver Version:</source>
        <translation>驱动版本：</translation>
    </message>
    <message>
        <source>The latest update time of the USB controller driver is too early, which may lead to exception when the U3V Vision camera acquires streams. Please update the driver.</source>
        <translation>USB控制器驱动的最近更新时间过早，可能导致U3V Vision相机取流异常，请更新驱动。</translation>
    </message>
    <message>
        <source>USB Controller Driver Info</source>
        <translation>USB控制器驱动信息</translation>
    </message>
    <message>
        <source>No USB host controller was found.</source>
        <translation>未找到USB主控制器。</translation>
    </message>
    <message>
        <source>USB3 Vision cameras need a USB 3.0 host controller. Install one, or check that it is enabled in the BIOS and that its driver is loaded.</source>
        <translation>USB3 Vision相机需要USB 3.0主控制器。请安装一个，或检查它是否已在BIOS中启用且其驱动程序已加载。</translation>
    </message>
</context>
<context>
    <name>VxUsbBasicInfoDlg</name>
    <message>
        <source>USB Controller Info</source>
        <translation>USB控制器信息</translation>
    </message>
    <message>
        <source>No USB host controller was found.</source>
        <translation>未找到USB主控制器。</translation>
    </message>
</context>
<context>
    <name>VxUsbDescriptorsCli</name>
    <message>
        <source>No USB device was found.</source>
        <translation>未找到 USB 设备。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a USB port path: use a name such as 1-1.4 or usb1.</source>
        <translation>“%1”不是 USB 端口路径：请使用 1-1.4 或 usb1 这样的名称。</translation>
    </message>
    <message>
        <source>No USB device at %1.</source>
        <translation>%1 处没有 USB 设备。</translation>
    </message>
    <message>
        <source>Give at most one USB port path.</source>
        <translation>最多只能指定一个 USB 端口路径。</translation>
    </message>
    <message>
        <source>Print every descriptor of the USB device at the port path given as argument (e.g. 1-1.4 or usb1), or of all USB devices, in the layout of lsusb -v, from sysfs.</source>
        <translation>从 sysfs 读取并按 lsusb -v 的格式打印参数所给端口路径（如 1-1.4 或 usb1）上 USB 设备的全部描述符；未给路径时打印所有 USB 设备的描述符。</translation>
    </message>
</context>
<context>
    <name>VxUsbTree</name>
    <message>
        <source>Controller: %1</source>
        <translation>控制器:%1</translation>
    </message>
    <message>
        <source>Bus %1: %2</source>
        <translation>总线 %1:%2</translation>
    </message>
    <message>
        <source>unknown speed</source>
        <translation>未知速率</translation>
    </message>
    <message>
        <source>Port %1 (%2): %3</source>
        <translation>端口 %1 (%2):%3</translation>
    </message>
    <message>
        <source>hub</source>
        <translation>集线器</translation>
    </message>
    <message>
        <source>Interface %1.%2: class %3, subclass %4, protocol %5</source>
        <translation>接口 %1.%2:类 %3,子类 %4,协议 %5</translation>
    </message>
</context>
</TS>
