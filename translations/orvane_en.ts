<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Menu</name>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>%n minute left</numerusform>
            <numerusform>%n minutes left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>YtDlp</name>
    <message numerus="yes">
        <source>%n years old</source>
        <translation>
            <numerusform>%n year old</numerusform>
            <numerusform>%n years old</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n months old</source>
        <translation>
            <numerusform>%n month old</numerusform>
            <numerusform>%n months old</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n days old</source>
        <translation>
            <numerusform>%n day old</numerusform>
            <numerusform>%n days old</numerusform>
        </translation>
    </message>
</context>
</TS>
