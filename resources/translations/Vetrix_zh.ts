<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>VxCheckReport</name>
    <message>
        <source>Not available: this check has no probe on this platform.</source>
        <translation>不可用：此平台上没有该项检查。</translation>
    </message>
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
</context>
<context>
    <name>VxResultText</name>
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
</context>
</TS>
