<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>LuInterface</name>
    <message>
        <source>Unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>Little Endian</source>
        <translation>小端序</translation>
    </message>
    <message>
        <source>Big Endian</source>
        <translation>大端序</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
</context>
</TS>
