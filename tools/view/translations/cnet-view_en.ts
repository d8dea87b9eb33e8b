<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>FaultWords</name>
    <message numerus="yes">
        <source>, %n more times</source>
        <translation>
            <numerusform>, %n more time</numerusform>
            <numerusform>, %n more times</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::CaptureBar</name>
    <message numerus="yes">
        <source>%n exchanges</source>
        <translation>
            <numerusform>%n exchange</numerusform>
            <numerusform>%n exchanges</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::FramesPage</name>
    <message numerus="yes">
        <source>%n exchanges</source>
        <translation>
            <numerusform>%n exchange</numerusform>
            <numerusform>%n exchanges</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n faults</source>
        <translation>
            <numerusform>%n fault</numerusform>
            <numerusform>%n faults</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>paused: %n more wait</source>
        <translation>
            <numerusform>paused: %n more waits</numerusform>
            <numerusform>paused: %n more wait</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n frames were saved in %1.</source>
        <translation>
            <numerusform>%n frame was saved in %1.</numerusform>
            <numerusform>%n frames were saved in %1.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::LineLoad</name>
    <message numerus="yes">
        <source>Nothing in the last %n minutes.</source>
        <translation>
            <numerusform>Nothing in the last minute (%n).</numerusform>
            <numerusform>Nothing in the last %n minutes.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 % in the last %n minutes.</source>
        <translation>
            <numerusform>%1 % in the last minute (%n).</numerusform>
            <numerusform>%1 % in the last %n minutes.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 bytes a second in the last %n minutes.</source>
        <translation>
            <numerusform>%1 bytes a second in the last minute (%n).</numerusform>
            <numerusform>%1 bytes a second in the last %n minutes.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::RecipeModel</name>
    <message numerus="yes">
        <source>There are %n values to paste</source>
        <translation>
            <numerusform>There is %n value to paste</numerusform>
            <numerusform>There are %n values to paste</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, and only %n rows from here on.</source>
        <translation>
            <numerusform>, and only %n row from here on.</numerusform>
            <numerusform>, and only %n rows from here on.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::RecipesPage</name>
    <message numerus="yes">
        <source>%n words</source>
        <translation>
            <numerusform>%n word</numerusform>
            <numerusform>%n words</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n without a value</source>
        <translation>
            <numerusform>%n without a value</numerusform>
            <numerusform>%n without a value</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n the same</source>
        <translation>
            <numerusform>%n the same</numerusform>
            <numerusform>%n the same</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n different</source>
        <translation>
            <numerusform>%n different</numerusform>
            <numerusform>%n different</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n not known</source>
        <translation>
            <numerusform>%n not known</numerusform>
            <numerusform>%n not known</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n edits of the project do not fit the file any more.</source>
        <translation>
            <numerusform>%n edit of the project does not fit the file any more.</numerusform>
            <numerusform>%n edits of the project do not fit the file any more.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n words were read: %2</source>
        <translation>
            <numerusform>%1 of %n word was read: %2</numerusform>
            <numerusform>%1 of %n words were read: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n values were taken from the PLC.</source>
        <translation>
            <numerusform>%n value was taken from the PLC.</numerusform>
            <numerusform>%n values were taken from the PLC.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n words differ from the PLC.</source>
        <translation>
            <numerusform>%n word differs from the PLC.</numerusform>
            <numerusform>%n words differ from the PLC.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n words were written and verified.</source>
        <translation>
            <numerusform>%n word was written and verified.</numerusform>
            <numerusform>%n words were written and verified.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Written, but %n words are not what was written.</source>
        <translation>
            <numerusform>Written, but %n word is not what was written.</numerusform>
            <numerusform>Written, but %n words are not what was written.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The recipe was not written as a whole: %1. %2 of %n words are in the PLC, %3 of them verified.</source>
        <translation>
            <numerusform>The recipe was not written: %1. %2 of %n word is in the PLC, %3 verified.</numerusform>
            <numerusform>The recipe was not written as a whole: %1. %2 of %n words are in the PLC, %3 of them verified.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Write %n words to %1, %2?</source>
        <translation>
            <numerusform>Write %n word to %1, %2?</numerusform>
            <numerusform>Write %n words to %1, %2?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::ScanPanel</name>
    <message numerus="yes">
        <source>Scanning with %1; %n stations so far. The live values stand still.</source>
        <translation>
            <numerusform>Scanning with %1; %n station so far. The live values stand still.</numerusform>
            <numerusform>Scanning with %1; %n stations so far. The live values stand still.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n stations answered.</source>
        <translation>
            <numerusform>%n station answered.</numerusform>
            <numerusform>%n stations answered.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Stopped; %n stations had answered until then.</source>
        <translation>
            <numerusform>Stopped; %n station had answered until then.</numerusform>
            <numerusform>Stopped; %n stations had answered until then.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rows were copied.</source>
        <translation>
            <numerusform>%n row was copied.</numerusform>
            <numerusform>%n rows were copied.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::StationsPage</name>
    <message numerus="yes">
        <source>counted for %n seconds</source>
        <translation>
            <numerusform>counted for %n second</numerusform>
            <numerusform>counted for %n seconds</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>counted for %n minutes</source>
        <translation>
            <numerusform>counted for %n minute</numerusform>
            <numerusform>counted for %n minutes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n rows were copied.</source>
        <translation>
            <numerusform>%n row was copied.</numerusform>
            <numerusform>%n rows were copied.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::TagList</name>
    <message numerus="yes">
        <source>remove %n tags</source>
        <translation>
            <numerusform>remove %n tag</numerusform>
            <numerusform>remove %n tags</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::TrendPage</name>
    <message numerus="yes">
        <source>No more than %n traces fit.</source>
        <translation>
            <numerusform>No more than %n trace fits.</numerusform>
            <numerusform>No more than %n traces fit.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>There are %n notes already.</source>
        <translation>
            <numerusform>There is %n note already.</numerusform>
            <numerusform>There are %n notes already.</numerusform>
        </translation>
    </message>
</context>
</TS>
