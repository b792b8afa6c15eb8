<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>AutoLinkSync</name>
    <message numerus="yes">
        <source>%Ln files have names that cannot be read.</source>
        <translation>
            <numerusform>%Ln file has a name that cannot be read.</numerusform>
            <numerusform>%Ln files have names that cannot be read.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AutoLinks</name>
    <message numerus="yes">
        <source>The system does not watch %Ln linked folders, as it has no watches left (fs.inotify.max_user_watches). They are looked at every %1 seconds instead.</source>
        <translation>
            <numerusform>The system does not watch %Ln linked folder, as it has no watches left (fs.inotify.max_user_watches). It is looked at every %1 seconds instead.</numerusform>
            <numerusform>The system does not watch %Ln linked folders, as it has no watches left (fs.inotify.max_user_watches). They are looked at every %1 seconds instead.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ContentMatchModel</name>
    <message numerus="yes">
        <source>The following%1 files and hyperlinks will not be added to the database:</source>
        <translation>
            <numerusform>The following%1 files and hyperlinks will not be added to the database:</numerusform>
            <numerusform>The following%1 files and hyperlinks will not be added to the database:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DuplicatePrompt</name>
    <message numerus="yes">
        <source>%Ln files are there already.</source>
        <translation>
            <numerusform>%Ln file is there already.</numerusform>
            <numerusform>%Ln files are there already.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files were not added, as others have the same names:</source>
        <translation>
            <numerusform>%Ln file was not added, as another one has the same name:</numerusform>
            <numerusform>%Ln files were not added, as others have the same names:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileOperationWorker</name>
    <message numerus="yes">
        <source>%Ln pictures could not be read and keep their thumbnails:

%1</source>
        <translation>
            <numerusform>%Ln picture could not be read and keeps its thumbnail:

%1</numerusform>
            <numerusform>%Ln pictures could not be read and keep their thumbnails:

%1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileTagsDialog</name>
    <message numerus="yes">
        <source>On %1 of %Ln files</source>
        <translation>
            <numerusform>On %1 of %Ln file</numerusform>
            <numerusform>On %1 of %Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HyperlinkCheck</name>
    <message numerus="yes">
        <source>%Ln hyperlinks were not added:</source>
        <translation>
            <numerusform>%Ln hyperlink was not added:</numerusform>
            <numerusform>%Ln hyperlinks were not added:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LeftOutFiles</name>
    <message numerus="yes">
        <source>%Ln files have names that cannot be read:</source>
        <translation>
            <numerusform>%Ln file has a name that cannot be read:</numerusform>
            <numerusform>%Ln files have names that cannot be read:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files or folders could not be read:</source>
        <translation>
            <numerusform>%Ln file or folder could not be read:</numerusform>
            <numerusform>%Ln files or folders could not be read:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MainFilesView</name>
    <message numerus="yes">
        <source>%1 selected</source>
        <translation>
            <numerusform>%1 selected</numerusform>
            <numerusform>%1 selected</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>MetaInfoDock</name>
    <message numerus="yes">
        <source>%1 bytes</source>
        <translation>
            <numerusform>%1 byte</numerusform>
            <numerusform>%1 bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PropertiesDialog</name>
    <message numerus="yes">
        <source>%1 bytes</source>
        <translation>
            <numerusform>%1 byte</numerusform>
            <numerusform>%1 bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ShellFilesModel</name>
    <message numerus="yes">
        <source>%1, %2 bytes</source>
        <translation>
            <numerusform>%1, %2 bytes</numerusform>
            <numerusform>%1, %2 bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message numerus="yes">
        <source>%Ln tags</source>
        <translation>
            <numerusform>%Ln tag</numerusform>
            <numerusform>%Ln tags</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups</source>
        <translation>
            <numerusform>%Ln group</numerusform>
            <numerusform>%Ln groups</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes</source>
        <translation>
            <numerusform>%Ln node</numerusform>
            <numerusform>%Ln nodes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships</source>
        <translation>
            <numerusform>%Ln tag relationship</numerusform>
            <numerusform>%Ln tag relationships</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln browsing trees</source>
        <translation>
            <numerusform>%Ln browsing tree</numerusform>
            <numerusform>%Ln browsing trees</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
</context>
</TS>
