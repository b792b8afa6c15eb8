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
</context>
<context>
    <name>EditNotes</name>
    <message numerus="yes">
        <source>Change tags of %Ln files</source>
        <translation>
            <numerusform>Change tags of %Ln file</numerusform>
            <numerusform>Change tags of %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Tags of %Ln files changed</source>
        <translation>
            <numerusform>Tags of %Ln file changed</numerusform>
            <numerusform>Tags of %Ln files changed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Add tags to %Ln files</source>
        <translation>
            <numerusform>Add tags to %Ln file</numerusform>
            <numerusform>Add tags to %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 added to %Ln files</source>
        <translation>
            <numerusform>%1 added to %Ln file</numerusform>
            <numerusform>%1 added to %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 tags added to %Ln files</source>
        <translation>
            <numerusform>%1 tags added to %Ln file</numerusform>
            <numerusform>%1 tags added to %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Remove tags from %Ln files</source>
        <translation>
            <numerusform>Remove tags from %Ln file</numerusform>
            <numerusform>Remove tags from %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 removed from %Ln files</source>
        <translation>
            <numerusform>%1 removed from %Ln file</numerusform>
            <numerusform>%1 removed from %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 tags removed from %Ln files</source>
        <translation>
            <numerusform>%1 tags removed from %Ln file</numerusform>
            <numerusform>%1 tags removed from %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files added</source>
        <translation>
            <numerusform>%Ln file added</numerusform>
            <numerusform>%Ln files added</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln were there already</source>
        <translation>
            <numerusform>%Ln was there already</numerusform>
            <numerusform>%Ln were there already</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln tags</source>
        <translation>
            <numerusform>Remove %Ln tag</numerusform>
            <numerusform>Remove %Ln tags</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags removed</source>
        <translation>
            <numerusform>%Ln tag removed</numerusform>
            <numerusform>%Ln tags removed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln groups</source>
        <translation>
            <numerusform>Remove %Ln group</numerusform>
            <numerusform>Remove %Ln groups</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups removed</source>
        <translation>
            <numerusform>%Ln group removed</numerusform>
            <numerusform>%Ln groups removed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Change the tags of %Ln groups</source>
        <translation>
            <numerusform>Change the tags of %Ln group</numerusform>
            <numerusform>Change the tags of %Ln groups</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Tags of %Ln groups changed</source>
        <translation>
            <numerusform>Tags of %Ln group changed</numerusform>
            <numerusform>Tags of %Ln groups changed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Add %Ln nodes</source>
        <translation>
            <numerusform>Add %Ln node</numerusform>
            <numerusform>Add %Ln nodes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes added</source>
        <translation>
            <numerusform>%Ln node added</numerusform>
            <numerusform>%Ln nodes added</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln nodes</source>
        <translation>
            <numerusform>Remove %Ln node</numerusform>
            <numerusform>Remove %Ln nodes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes removed</source>
        <translation>
            <numerusform>%Ln node removed</numerusform>
            <numerusform>%Ln nodes removed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Add %Ln tag relationships</source>
        <translation>
            <numerusform>Add %Ln tag relationship</numerusform>
            <numerusform>Add %Ln tag relationships</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships added</source>
        <translation>
            <numerusform>%Ln tag relationship added</numerusform>
            <numerusform>%Ln tag relationships added</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln tag relationships</source>
        <translation>
            <numerusform>Remove %Ln tag relationship</numerusform>
            <numerusform>Remove %Ln tag relationships</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships removed</source>
        <translation>
            <numerusform>%Ln tag relationship removed</numerusform>
            <numerusform>%Ln tag relationships removed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags merged into %1</source>
        <translation>
            <numerusform>%Ln tag merged into %1</numerusform>
            <numerusform>%Ln tags merged into %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files changed</source>
        <translation>
            <numerusform>%Ln file changed</numerusform>
            <numerusform>%Ln files changed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Merge %Ln tags into %1</source>
        <translation>
            <numerusform>Merge %Ln tag into %1</numerusform>
            <numerusform>Merge %Ln tags into %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileCount</name>
    <message numerus="yes">
        <source>%1, %Ln files</source>
        <translation>
            <numerusform>%1, %Ln file</numerusform>
            <numerusform>%1, %Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1, %2 of %Ln files</source>
        <extracomment>the same: its name, how many of its files are shown, and how many it has</extracomment>
        <translation>
            <numerusform>%1, %2 of %Ln file</numerusform>
            <numerusform>%1, %2 of %Ln files</numerusform>
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
    <name>MergeTagsDialog</name>
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
    <message numerus="yes">
        <source>%Ln files selected</source>
        <translation>
            <numerusform>%Ln file selected</numerusform>
            <numerusform>%Ln files selected</numerusform>
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
<context>
    <name>UndoHistory</name>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags</source>
        <translation>
            <numerusform>%Ln tag</numerusform>
            <numerusform>%Ln tags</numerusform>
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
        <source>%Ln links</source>
        <translation>
            <numerusform>%Ln link</numerusform>
            <numerusform>%Ln links</numerusform>
        </translation>
    </message>
</context>
</TS>
