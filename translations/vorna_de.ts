<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>AbstractController</name>
    <message>
        <source>Read-only Database</source>
        <translation>Schreibgeschützte Datenbank</translation>
    </message>
    <message>
        <source>This database is read-only.</source>
        <translation>Diese Datenbank ist schreibgeschützt.</translation>
    </message>
</context>
<context>
    <name>AddHyperlinkDialog</name>
    <message>
        <source>Add Hyperlink</source>
        <translation>Hyperlink hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Hyperlink:</source>
        <translation>&amp;Hyperlink:</translation>
    </message>
    <message>
        <source>https://</source>
        <translation>https://</translation>
    </message>
    <message>
        <source>&amp;Description:</source>
        <translation>&amp;Beschreibung:</translation>
    </message>
    <message>
        <source>The address of a page or a mailbox, kept like a file.</source>
        <translation>Die Adresse einer Seite oder eines Postfachs, aufbewahrt wie eine Datei.</translation>
    </message>
    <message>
        <source>Hyperlinks is file on the local file system</source>
        <translation>Der Hyperlink ist eine Datei des lokalen Dateisystems</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>AutoLinkDialog</name>
    <message>
        <source>Auto Linking</source>
        <translation>Automatische Verknüpfung</translation>
    </message>
    <message>
        <source>Absolute path: %1
Relative path: %2</source>
        <translation>Absoluter Pfad: %1
Relativer Pfad: %2</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>AutoLinkSync</name>
    <message>
        <source>Files left out</source>
        <translation>Ausgelassene Dateien</translation>
    </message>
    <message>
        <source>1 file has a name that cannot be read:
%1</source>
        <translation>1 Datei hat einen Namen, der nicht gelesen werden kann:
%1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files have names that cannot be read.</source>
        <translation>
            <numerusform>%Ln Datei hat einen Namen, der nicht gelesen werden kann.</numerusform>
            <numerusform>%Ln Dateien haben Namen, die nicht gelesen werden können.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AutoLinks</name>
    <message>
        <source>Can&apos;t link to folder</source>
        <translation>Ordner kann nicht verknüpft werden</translation>
    </message>
    <message>
        <source>The folder does not exist.</source>
        <translation>Den Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>Folder contains current database.</source>
        <translation>Der Ordner enthält die geöffnete Datenbank.</translation>
    </message>
    <message>
        <source>Error Creating Link</source>
        <translation>Fehler beim Verknüpfen</translation>
    </message>
    <message>
        <source>Node already has link to this folder.</source>
        <translation>Der Knoten ist mit diesem Ordner bereits verknüpft.</translation>
    </message>
    <message>
        <source>The system does not watch 1 linked folder, as it has no watches left (fs.inotify.max_user_watches). The folder is looked at every %1 seconds instead.</source>
        <translation>Das System überwacht 1 verknüpften Ordner nicht, da es keine Überwachungen mehr frei hat (fs.inotify.max_user_watches). Stattdessen wird alle %1 Sekunden in den Ordner gesehen.</translation>
    </message>
    <message numerus="yes">
        <source>The system does not watch %Ln linked folders, as it has no watches left (fs.inotify.max_user_watches). They are looked at every %1 seconds instead.</source>
        <translation>
            <numerusform>Das System überwacht %Ln verknüpften Ordner nicht, da es keine Überwachungen mehr frei hat (fs.inotify.max_user_watches). Stattdessen wird alle %1 Sekunden in den Ordner gesehen.</numerusform>
            <numerusform>Das System überwacht %Ln verknüpfte Ordner nicht, da es keine Überwachungen mehr frei hat (fs.inotify.max_user_watches). Stattdessen wird alle %1 Sekunden in die Ordner gesehen.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>BrowsingTreeDialog</name>
    <message>
        <source>&amp;Create new Browsing Tree</source>
        <translation>&amp;Neuer Navigationsbaum</translation>
    </message>
    <message>
        <source>&amp;Delete Browsing Tree</source>
        <translation>Navigationsbaum &amp;löschen</translation>
    </message>
    <message>
        <source>Browsing Trees</source>
        <translation>Navigationsbäume</translation>
    </message>
    <message>
        <source>All who share this database see the same trees. Which one is shown here is your own choice.</source>
        <translation>Alle, die diese Datenbank teilen, sehen dieselben Bäume. Welcher davon hier gezeigt wird, ist Ihre eigene Wahl.</translation>
    </message>
    <message>
        <source>Make an empty tree</source>
        <translation>Einen leeren Baum anlegen</translation>
    </message>
    <message>
        <source>Delete the tree of the current row for everybody; tags and files stay (%1)</source>
        <translation>Den Baum der aktuellen Zeile für alle löschen; Tags und Dateien bleiben (%1)</translation>
    </message>
    <message>
        <source>Create new Browsing Tree</source>
        <translation>Neuer Navigationsbaum</translation>
    </message>
    <message>
        <source>Name of new browsing tree:</source>
        <translation>Name des neuen Navigationsbaums:</translation>
    </message>
    <message>
        <source>Delete browsing tree</source>
        <translation>Navigationsbaum löschen</translation>
    </message>
    <message>
        <source>Default browsing tree can not be deleted.</source>
        <translation>Der Standardbaum kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>Selected browsing tree can not be deleted.</source>
        <translation>Der ausgewählte Navigationsbaum kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>The following Browsing Tree will be deleted: %1.</source>
        <translation>Dieser Navigationsbaum wird gelöscht: %1.</translation>
    </message>
</context>
<context>
    <name>BrowsingTreeTableModel</name>
    <message>
        <source>Show %1</source>
        <translation>%1 anzeigen</translation>
    </message>
    <message>
        <source>There is already a browsing tree with this name.</source>
        <translation>Es gibt schon einen Navigationsbaum mit diesem Namen.</translation>
    </message>
    <message>
        <source>Selected browsing tree no longer exists.</source>
        <translation>Den ausgewählten Navigationsbaum gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>Browsing tree name</source>
        <translation>Name des Navigationsbaums</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswahl</translation>
    </message>
    <message>
        <source>Previous browsing tree does not exists anymore. 
Selected default browsing tree.</source>
        <translation>Den bisherigen Navigationsbaum gibt es nicht mehr. 
Der Standardbaum wurde ausgewählt.</translation>
    </message>
    <message>
        <source>Browsing tree error</source>
        <translation>Fehler des Navigationsbaums</translation>
    </message>
</context>
<context>
    <name>BrowsingTreeTagsDialog</name>
    <message>
        <source>Browsing Tree Tags</source>
        <translation>Tags des Navigationsbaums</translation>
    </message>
</context>
<context>
    <name>BrowsingTreeViewDock</name>
    <message>
        <source>Browsing Tree</source>
        <translation>Navigationsbaum</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete with subtree</source>
        <translation>Mit Unterbaum löschen</translation>
    </message>
    <message>
        <source>Tag Relationships Enabled</source>
        <translation>Tag-Beziehungen berücksichtigen</translation>
    </message>
    <message>
        <source>Tag Node Inverted</source>
        <translation>Tag-Knoten umgekehrt</translation>
    </message>
    <message>
        <source>Auto Link To Folder</source>
        <translation>Automatisch mit Ordner verknüpfen</translation>
    </message>
    <message>
        <source>View Path</source>
        <translation>Pfad anzeigen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Browsing Tree: %1</source>
        <translation>Navigationsbaum: %1</translation>
    </message>
    <message>
        <source>Select Directoty</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Save as Node</source>
        <translation>Als Knoten speichern</translation>
    </message>
    <message>
        <source>Make nodes of the tags that are required now</source>
        <translation>Macht Knoten aus den Tags, die gerade verlangt werden</translation>
    </message>
</context>
<context>
    <name>CaughtError</name>
    <message>
        <source>There is not enough memory.</source>
        <translation>Der Speicher reicht nicht aus.</translation>
    </message>
    <message>
        <source>Something unexpected went wrong: %1</source>
        <translation>Etwas Unerwartetes ist schiefgegangen: %1</translation>
    </message>
    <message>
        <source>Something unexpected went wrong.</source>
        <translation>Etwas Unerwartetes ist schiefgegangen.</translation>
    </message>
</context>
<context>
    <name>ChunkRows</name>
    <message>
        <source>External files without a path: %1</source>
        <translation>Externe Dateien ohne Pfad: %1</translation>
    </message>
    <message>
        <source>Files with texts that are too long: %1</source>
        <translation>Dateien mit zu langen Texten: %1</translation>
    </message>
    <message>
        <source>Files whose contents are missing or damaged: %1</source>
        <translation>Dateien, deren Inhalt fehlt oder beschädigt ist: %1</translation>
    </message>
</context>
<context>
    <name>Collection</name>
    <message>
        <source>Move the node</source>
        <translation>Knoten verschieben</translation>
    </message>
    <message>
        <source>The node moved</source>
        <translation>Knoten verschoben</translation>
    </message>
</context>
<context>
    <name>CollectionOpener</name>
    <message>
        <source>Error opening database</source>
        <translation>Fehler beim Öffnen der Datenbank</translation>
    </message>
    <message>
        <source>The database is in use by another program. Waiting ...</source>
        <translation>Die Datenbank wird von einem anderen Programm benutzt. Es wird gewartet&#xa0;…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Open Database</source>
        <translation>Datenbank öffnen</translation>
    </message>
    <message>
        <source>Opening database...</source>
        <translation>Datenbank wird geöffnet&#xa0;…</translation>
    </message>
</context>
<context>
    <name>ColumnMenu</name>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Usage: vorna [FILE]

Files documents, pictures and hyperlinks in a database, with tags in place of folders.

FILE is a database (.vrn) to open, or a shell (.vsh) to import. Without it the database that was
open last is opened.

  --help     show this text
  --version  show the version
</source>
        <translation>Aufruf: vorna [DATEI]

Legt Dokumente, Bilder und Hyperlinks in einer Datenbank ab, mit Tags anstelle von Ordnern.

DATEI ist eine Datenbank (.vrn), die geöffnet, oder eine Hülle (.vsh), die importiert wird. Ohne sie
wird die Datenbank geöffnet, die zuletzt offen war.

  --help     diesen Text zeigen
  --version  die Version zeigen
</translation>
    </message>
</context>
<context>
    <name>CompletionList</name>
    <message>
        <source>Names</source>
        <translation>Namen</translation>
    </message>
</context>
<context>
    <name>CompletionModel</name>
    <message>
        <source>New tag &quot;%1&quot;</source>
        <translation>Neuer Tag „%1“</translation>
    </message>
    <message>
        <source>%1   (%2)</source>
        <translation>%1   (%2)</translation>
    </message>
</context>
<context>
    <name>ConflictList</name>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Use New Name: %1</source>
        <translation>Neuen Namen verwenden: %1</translation>
    </message>
</context>
<context>
    <name>Connections</name>
    <message>
        <source>The server does not use standard strings.</source>
        <translation>Der Server verwendet keine standardgemäßen Zeichenketten.</translation>
    </message>
    <message>
        <source>The database file &quot;%1&quot; is missing.</source>
        <translation>Die Datenbankdatei „%1“ fehlt.</translation>
    </message>
</context>
<context>
    <name>ContentGroups</name>
    <message>
        <source>Files of the same contents as another one, which has their tags: %1</source>
        <translation>Dateien gleichen Inhalts wie eine andere, die ihre Tags hat: %1</translation>
    </message>
</context>
<context>
    <name>ContentMatchModel</name>
    <message>
        <source>    Content matched other external file
</source>
        <translation>    Inhalt stimmt mit einer anderen externen Datei überein
</translation>
    </message>
    <message>
        <source>No content duplicates.</source>
        <translation>Keine Duplikate nach Inhalt.</translation>
    </message>
    <message numerus="yes">
        <source>The following%1 files and hyperlinks will not be added to the database:</source>
        <translation>
            <numerusform>Die folgende Datei oder der folgende Hyperlink wird nicht in die Datenbank aufgenommen (Anzahl:%1):</numerusform>
            <numerusform>Die folgenden%1 Dateien und Hyperlinks werden nicht in die Datenbank aufgenommen:</numerusform>
        </translation>
    </message>
    <message>
        <source>    Took the place of the following missing file in the database:
</source>
        <translation>    Nahm die Stelle dieser fehlenden Datei der Datenbank ein:
</translation>
    </message>
    <message>
        <source>External content duplicate group.</source>
        <translation>Gruppe externer Dateien gleichen Inhalts.</translation>
    </message>
    <message>
        <source>Content matched %1, which is one of the name matches.
</source>
        <translation>Inhalt stimmt mit %1 überein, einer der Dateien gleichen Namens.
</translation>
    </message>
    <message>
        <source>Content matched %1, which could not be added to the database.
</source>
        <translation>Inhalt stimmt mit %1 überein; diese Datei konnte nicht in die Datenbank aufgenommen werden.
</translation>
    </message>
    <message>
        <source>Content matched %1, which was added to the database.
</source>
        <translation>Inhalt stimmt mit %1 überein; diese Datei wurde in die Datenbank aufgenommen.
</translation>
    </message>
    <message>
        <source>    Content matched the following hyperlink in the database:
</source>
        <translation>    Inhalt stimmt mit diesem Hyperlink der Datenbank überein:
</translation>
    </message>
    <message>
        <source>    Content matched the following hyperlinks in the database:
</source>
        <translation>    Inhalt stimmt mit diesen Hyperlinks der Datenbank überein:
</translation>
    </message>
    <message>
        <source>    Content matched the following file in the database:
</source>
        <translation>    Inhalt stimmt mit dieser Datei der Datenbank überein:
</translation>
    </message>
    <message>
        <source>    Content matched the following files in the database:
</source>
        <translation>    Inhalt stimmt mit diesen Dateien der Datenbank überein:
</translation>
    </message>
    <message>
        <source>%1  Size: %2  Last Modified: %3</source>
        <translation>%1  Größe: %2  Zuletzt geändert: %3</translation>
    </message>
    <message>
        <source>
           Tags: %1</source>
        <translation>
           Tags: %1</translation>
    </message>
    <message>
        <source>Database file: %1   Size: %2 Last Modified: %3</source>
        <translation>Datei der Datenbank: %1   Größe: %2 Zuletzt geändert: %3</translation>
    </message>
</context>
<context>
    <name>ContentsModel</name>
    <message>
        <source>Thumbnail</source>
        <translation>Miniaturbild</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Modification Date</source>
        <translation>Änderungsdatum</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Addition Date</source>
        <translation>Aufnahmedatum</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>ID Code</source>
        <translation>ID-Code</translation>
    </message>
    <message>
        <source>LoadID</source>
        <translation>Lade-ID</translation>
    </message>
</context>
<context>
    <name>DatabaseConnectDialog</name>
    <message>
        <source>Connect to Database</source>
        <translation>Mit Datenbank verbinden</translation>
    </message>
    <message>
        <source>A database that others share on a PostgreSQL server. The password is not stored.</source>
        <translation>Eine Datenbank, die andere auf einem PostgreSQL-Server teilen. Das Kennwort wird nicht gespeichert.</translation>
    </message>
    <message>
        <source>&amp;Host:</source>
        <translation>&amp;Server:</translation>
    </message>
    <message>
        <source>server.example.com</source>
        <translation>server.example.com</translation>
    </message>
    <message>
        <source>Po&amp;rt:</source>
        <translation>P&amp;ort:</translation>
    </message>
    <message>
        <source>&amp;Database:</source>
        <translation>&amp;Datenbank:</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>&amp;Benutzer:</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Kennwort:</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>Invalid database details</source>
        <translation>Ungültige Angaben zur Datenbank</translation>
    </message>
    <message>
        <source>Provided database details were invalid.</source>
        <translation>Die Angaben zur Datenbank waren ungültig.</translation>
    </message>
</context>
<context>
    <name>DatabaseContentsSelector</name>
    <message>
        <source>Import Options</source>
        <translation>Importoptionen</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>File Descriptions</source>
        <translation>Dateibeschreibungen</translation>
    </message>
    <message>
        <source>Append Descriptions</source>
        <translation>Beschreibungen anhängen</translation>
    </message>
    <message>
        <source>Replace Descriptions</source>
        <translation>Beschreibungen ersetzen</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Tag Browsing Nodes</source>
        <translation>Knoten der Navigationsbäume</translation>
    </message>
    <message>
        <source>Tag Relationships</source>
        <translation>Tag-Beziehungen</translation>
    </message>
    <message>
        <source>Tag to File Relationships</source>
        <translation>Zuordnungen von Tags zu Dateien</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Tag-Gruppen</translation>
    </message>
    <message>
        <source>What should the files that this database shares with the shell &quot;%1&quot; take over?</source>
        <translation>Was sollen die Dateien übernehmen, die diese Datenbank mit der Hülle „%1“ gemeinsam hat?</translation>
    </message>
    <message>
        <source>What should be imported from &quot;%1&quot;?</source>
        <translation>Was soll aus „%1“ importiert werden?</translation>
    </message>
</context>
<context>
    <name>DatabaseErrors</name>
    <message>
        <source>Connection problem</source>
        <translation>Verbindungsproblem</translation>
    </message>
    <message>
        <source>Could not connect to the database.</source>
        <translation>Mit der Datenbank konnte keine Verbindung hergestellt werden.</translation>
    </message>
    <message>
        <source>This may be a result of the file permissions of the database file.</source>
        <translation>Das kann an den Dateirechten der Datenbankdatei liegen.</translation>
    </message>
    <message>
        <source>This may be a result of the permissions of the database file.</source>
        <translation>Das kann an den Rechten der Datenbankdatei liegen.</translation>
    </message>
    <message>
        <source>This is the result of a disk I/O error.</source>
        <translation>Das liegt an einem Ein-/Ausgabefehler des Datenträgers.</translation>
    </message>
    <message>
        <source>The database file may be corrupt.</source>
        <translation>Die Datenbankdatei könnte beschädigt sein.</translation>
    </message>
    <message>
        <source>The database is full.</source>
        <translation>Die Datenbank ist voll.</translation>
    </message>
    <message>
        <source>The database file could not be opened.</source>
        <translation>Die Datenbankdatei konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>This may be a result of authorization issues.</source>
        <translation>Das kann an fehlender Berechtigung liegen.</translation>
    </message>
    <message>
        <source>The file opened is not a database file.</source>
        <translation>Die geöffnete Datei ist keine Datenbankdatei.</translation>
    </message>
    <message>
        <source>An error has occurred accessing the database. </source>
        <translation>Beim Zugriff auf die Datenbank ist ein Fehler aufgetreten. </translation>
    </message>
    <message>
        <source>Error Accessing Database</source>
        <translation>Fehler beim Zugriff auf die Datenbank</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Application can&apos;t continue to work with the current database, due to error.
What do you want to do?</source>
        <translation>Das Programm kann wegen eines Fehlers mit der geöffneten Datenbank nicht weiterarbeiten.
Was möchten Sie tun?</translation>
    </message>
    <message>
        <source>Open another database</source>
        <translation>Andere Datenbank öffnen</translation>
    </message>
    <message>
        <source>Exit application</source>
        <translation>Programm beenden</translation>
    </message>
</context>
<context>
    <name>DatabaseImport</name>
    <message>
        <source>Import Shell</source>
        <translation>Hülle importieren</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>A shell is imported into a database. Open a local database that may be changed, and choose Import, Shell.</source>
        <translation>Eine Hülle wird in eine Datenbank importiert. Öffnen Sie eine lokale Datenbank, die geändert werden darf, und wählen Sie „Importieren“, „Hülle“.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no file, or is gone. Nothing was imported.</source>
        <translation>„%1“ ist keine Datei oder nicht mehr da. Nichts wurde importiert.</translation>
    </message>
</context>
<context>
    <name>DatabaseLock</name>
    <message>
        <source>The database is in use by another program. Please try again later.</source>
        <translation>Die Datenbank wird von einem anderen Programm benutzt. Bitte versuchen Sie es später noch einmal.</translation>
    </message>
</context>
<context>
    <name>DatabaseMaker</name>
    <message>
        <source>Create New Database</source>
        <translation>Neue Datenbank anlegen</translation>
    </message>
    <message>
        <source>Failed to create database</source>
        <translation>Datenbank konnte nicht angelegt werden</translation>
    </message>
    <message>
        <source>Cannot remove currently open database.</source>
        <translation>Die geöffnete Datenbank kann nicht entfernt werden.</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 gibt es bereits.
Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>Failed to remove existent database.</source>
        <translation>Die vorhandene Datenbank konnte nicht entfernt werden.</translation>
    </message>
    <message>
        <source>A database could not be created at this place.</source>
        <translation>An dieser Stelle konnte keine Datenbank angelegt werden.</translation>
    </message>
    <message>
        <source>Failed to open database</source>
        <translation>Datenbank konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Failed to open new database.</source>
        <translation>Die neue Datenbank konnte nicht geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>DatabaseManger</name>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>The connection to the database is lost.</source>
        <translation>Die Verbindung zur Datenbank ist abgebrochen.</translation>
    </message>
    <message>
        <source>The database could not be read completely, so it cannot be changed.</source>
        <translation>Die Datenbank konnte nicht vollständig gelesen werden und kann deshalb nicht geändert werden.</translation>
    </message>
    <message>
        <source>Local data is updating.</source>
        <translation>Die lokalen Daten werden aktualisiert.</translation>
    </message>
    <message>
        <source>Name Missing</source>
        <translation>Name fehlt</translation>
    </message>
    <message>
        <source>A name must not be empty.</source>
        <translation>Ein Name darf nicht leer sein.</translation>
    </message>
    <message>
        <source>The text is longer than %1 characters and was not stored.</source>
        <translation>Der Text ist länger als %1 Zeichen und wurde nicht gespeichert.</translation>
    </message>
    <message>
        <source>Exporting</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Nothing can be exported to &quot;%1&quot;.

The reason: %2</source>
        <translation>Nach „%1“ kann nichts exportiert werden.

Der Grund: %2</translation>
    </message>
</context>
<context>
    <name>DatabaseVersionCheck</name>
    <message>
        <source>The database holds parts that Vorna did not make, such as views or triggers. It was not opened, so that nothing in it can run.</source>
        <translation>Die Datenbank enthält Teile, die nicht von Vorna stammen, etwa Sichten oder Trigger. Sie wurde nicht geöffnet, damit nichts davon ausgeführt werden kann.</translation>
    </message>
    <message>
        <source>The database was created with an earlier version of Vorna.</source>
        <translation>Die Datenbank wurde mit einer früheren Version von Vorna angelegt.</translation>
    </message>
    <message>
        <source>The file will be upgraded to the current version but will not be backward compatible.</source>
        <translation>Die Datei wird auf die aktuelle Version gebracht und ist dann mit früheren nicht mehr verträglich.</translation>
    </message>
    <message>
        <source>Database upgraded successfully.</source>
        <translation>Die Datenbank wurde auf die aktuelle Version gebracht.</translation>
    </message>
    <message>
        <source>Problem occurred while upgrading database. Probably you have no permission to perform this operation.</source>
        <translation>Beim Aktualisieren der Datenbank ist ein Problem aufgetreten. Wahrscheinlich fehlt Ihnen die Berechtigung dazu.</translation>
    </message>
    <message>
        <source>The database is not supported</source>
        <translation>Die Datenbank wird nicht unterstützt</translation>
    </message>
    <message>
        <source>The database could be corrupted please check it.</source>
        <translation>Die Datenbank könnte beschädigt sein; bitte prüfen Sie sie.</translation>
    </message>
    <message>
        <source>Error opening database</source>
        <translation>Fehler beim Öffnen der Datenbank</translation>
    </message>
</context>
<context>
    <name>DescriptionBar</name>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>DesktopOpener</name>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Failed opening hyperlink.</source>
        <translation>Der Hyperlink konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Error opening file</source>
        <translation>Fehler beim Öffnen der Datei</translation>
    </message>
    <message>
        <source>Vorna is unable to open this file. There may not be any application associated with the file type.</source>
        <translation>Vorna kann diese Datei nicht öffnen. Möglicherweise ist dem Dateityp kein Programm zugeordnet.</translation>
    </message>
    <message>
        <source>Error opening folder</source>
        <translation>Fehler beim Öffnen des Ordners</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; could not be shown. There may not be any file manager installed.</source>
        <translation>Der Ordner „%1“ konnte nicht gezeigt werden. Möglicherweise ist kein Dateimanager installiert.</translation>
    </message>
</context>
<context>
    <name>DuplicateManager</name>
    <message>
        <source>Grouping files with duplicate content</source>
        <translation>Dateien gleichen Inhalts werden zusammengestellt</translation>
    </message>
    <message>
        <source>Grouping name duplicates</source>
        <translation>Dateien gleichen Namens werden zusammengestellt</translation>
    </message>
    <message>
        <source>Grouping by content...
Examining file number  %1</source>
        <translation>Nach Inhalt zusammenstellen&#xa0;…
Datei Nummer  %1 wird untersucht</translation>
    </message>
</context>
<context>
    <name>DuplicatePrompt</name>
    <message>
        <source>Duplicates</source>
        <translation>Duplikate</translation>
    </message>
    <message>
        <source>Content Matches</source>
        <translation>Gleicher Inhalt</translation>
    </message>
    <message>
        <source>Name Matches</source>
        <translation>Gleicher Name</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>Deselect all</source>
        <translation>Alle abwählen</translation>
    </message>
    <message>
        <source>The duplicate prompt dialog is being created.</source>
        <translation>Die Übersicht der Duplikate wird erstellt.</translation>
    </message>
    <message>
        <source>Creating Duplicate Prompt</source>
        <translation>Duplikate</translation>
    </message>
    <message>
        <source>One file is there already.</source>
        <translation>Eine Datei ist schon vorhanden.</translation>
    </message>
    <message>
        <source>It got the tag %1.</source>
        <translation>Sie hat das Tag %1 erhalten.</translation>
    </message>
    <message>
        <source>It got the tags %1.</source>
        <translation>Sie hat die Tags %1 erhalten.</translation>
    </message>
    <message>
        <source>They got the tag %1.</source>
        <translation>Sie haben das Tag %1 erhalten.</translation>
    </message>
    <message>
        <source>They got the tags %1.</source>
        <translation>Sie haben die Tags %1 erhalten.</translation>
    </message>
    <message>
        <source>No name duplicates.</source>
        <translation>Keine Duplikate nach Namen.</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Only the first %1 of the %2 selected lines were copied.</source>
        <translation>Nur die ersten %1 der %2 ausgewählten Zeilen wurden kopiert.</translation>
    </message>
    <message>
        <source>The database is closed.</source>
        <translation>Die Datenbank ist geschlossen.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files are there already.</source>
        <translation>
            <numerusform>%Ln Datei ist schon vorhanden.</numerusform>
            <numerusform>%Ln Dateien sind schon vorhanden.</numerusform>
        </translation>
    </message>
    <message>
        <source>The following files have matching names. Deselect those you do not want added.</source>
        <translation>Die folgenden Dateien haben gleiche Namen. Wählen Sie ab, was nicht hinzugefügt werden soll.</translation>
    </message>
    <message>
        <source>The following files have matching names. Deselect the checked file if you do not want it added.</source>
        <translation>Die folgenden Dateien haben gleiche Namen. Wählen Sie die angekreuzte Datei ab, wenn sie nicht hinzugefügt werden soll.</translation>
    </message>
</context>
<context>
    <name>EditNotes</name>
    <message>
        <source>Change tags of 1 file</source>
        <translation>Tags von 1 Datei ändern</translation>
    </message>
    <message numerus="yes">
        <source>Change tags of %Ln files</source>
        <translation>
            <numerusform>Tags von %Ln Datei ändern</numerusform>
            <numerusform>Tags von %Ln Dateien ändern</numerusform>
        </translation>
    </message>
    <message>
        <source>Tags of 1 file changed</source>
        <translation>Tags von 1 Datei geändert</translation>
    </message>
    <message numerus="yes">
        <source>Tags of %Ln files changed</source>
        <translation>
            <numerusform>Tags von %Ln Datei geändert</numerusform>
            <numerusform>Tags von %Ln Dateien geändert</numerusform>
        </translation>
    </message>
    <message>
        <source>Add tags to 1 file</source>
        <translation>1 Datei Tags geben</translation>
    </message>
    <message numerus="yes">
        <source>Add tags to %Ln files</source>
        <translation>
            <numerusform>%Ln Datei Tags geben</numerusform>
            <numerusform>%Ln Dateien Tags geben</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 added to 1 file</source>
        <translation>1 Datei hat jetzt %1</translation>
    </message>
    <message numerus="yes">
        <source>%1 added to %Ln files</source>
        <translation>
            <numerusform>%Ln Datei hat jetzt %1</numerusform>
            <numerusform>%Ln Dateien haben jetzt %1</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 tags added to 1 file</source>
        <translation>1 Datei hat %1 Tags mehr</translation>
    </message>
    <message numerus="yes">
        <source>%1 tags added to %Ln files</source>
        <translation>
            <numerusform>%Ln Datei hat %1 Tags mehr</numerusform>
            <numerusform>%Ln Dateien haben %1 Tags mehr</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove tags from 1 file</source>
        <translation>1 Datei Tags nehmen</translation>
    </message>
    <message numerus="yes">
        <source>Remove tags from %Ln files</source>
        <translation>
            <numerusform>%Ln Datei Tags nehmen</numerusform>
            <numerusform>%Ln Dateien Tags nehmen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 removed from 1 file</source>
        <translation>%1 von 1 Datei entfernt</translation>
    </message>
    <message numerus="yes">
        <source>%1 removed from %Ln files</source>
        <translation>
            <numerusform>%1 von %Ln Datei entfernt</numerusform>
            <numerusform>%1 von %Ln Dateien entfernt</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 tags removed from 1 file</source>
        <translation>%1 Tags von 1 Datei entfernt</translation>
    </message>
    <message numerus="yes">
        <source>%1 tags removed from %Ln files</source>
        <translation>
            <numerusform>%1 Tags von %Ln Datei entfernt</numerusform>
            <numerusform>%1 Tags von %Ln Dateien entfernt</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file added</source>
        <translation>1 Datei hinzugefügt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files added</source>
        <translation>
            <numerusform>%Ln Datei hinzugefügt</numerusform>
            <numerusform>%Ln Dateien hinzugefügt</numerusform>
        </translation>
    </message>
    <message>
        <source>1 was there already</source>
        <translation>1 war schon da</translation>
    </message>
    <message numerus="yes">
        <source>%Ln were there already</source>
        <translation>
            <numerusform>%Ln war schon da</numerusform>
            <numerusform>%Ln waren schon da</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>1 file added, 2 were there already</comment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Add the tag %1</source>
        <translation>Tag %1 anlegen</translation>
    </message>
    <message>
        <source>The tag %1 added</source>
        <translation>Tag %1 angelegt</translation>
    </message>
    <message>
        <source>Rename the tag %1</source>
        <translation>Tag %1 umbenennen</translation>
    </message>
    <message>
        <source>%1 renamed to %2</source>
        <translation>%1 heißt jetzt %2</translation>
    </message>
    <message>
        <source>Describe the tag %1</source>
        <translation>Tag %1 beschreiben</translation>
    </message>
    <message>
        <source>Description of %1 changed</source>
        <translation>Beschreibung von %1 geändert</translation>
    </message>
    <message>
        <source>Remove the tag %1</source>
        <translation>Tag %1 entfernen</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln tags</source>
        <translation>
            <numerusform>%Ln Tag entfernen</numerusform>
            <numerusform>%Ln Tags entfernen</numerusform>
        </translation>
    </message>
    <message>
        <source>The tag %1 removed</source>
        <translation>Tag %1 entfernt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags removed</source>
        <translation>
            <numerusform>%Ln Tag entfernt</numerusform>
            <numerusform>%Ln Tags entfernt</numerusform>
        </translation>
    </message>
    <message>
        <source>Add the group %1</source>
        <translation>Gruppe %1 anlegen</translation>
    </message>
    <message>
        <source>The group %1 added</source>
        <translation>Gruppe %1 angelegt</translation>
    </message>
    <message>
        <source>Rename the group %1</source>
        <translation>Gruppe %1 umbenennen</translation>
    </message>
    <message>
        <source>Remove the group %1</source>
        <translation>Gruppe %1 entfernen</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln groups</source>
        <translation>
            <numerusform>%Ln Gruppe entfernen</numerusform>
            <numerusform>%Ln Gruppen entfernen</numerusform>
        </translation>
    </message>
    <message>
        <source>The group %1 removed</source>
        <translation>Gruppe %1 entfernt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups removed</source>
        <translation>
            <numerusform>%Ln Gruppe entfernt</numerusform>
            <numerusform>%Ln Gruppen entfernt</numerusform>
        </translation>
    </message>
    <message>
        <source>Change the tags of the group %1</source>
        <translation>Tags der Gruppe %1 ändern</translation>
    </message>
    <message numerus="yes">
        <source>Change the tags of %Ln groups</source>
        <translation>
            <numerusform>Tags von %Ln Gruppe ändern</numerusform>
            <numerusform>Tags von %Ln Gruppen ändern</numerusform>
        </translation>
    </message>
    <message>
        <source>Tags of the group %1 changed</source>
        <translation>Tags der Gruppe %1 geändert</translation>
    </message>
    <message numerus="yes">
        <source>Tags of %Ln groups changed</source>
        <translation>
            <numerusform>Tags von %Ln Gruppe geändert</numerusform>
            <numerusform>Tags von %Ln Gruppen geändert</numerusform>
        </translation>
    </message>
    <message>
        <source>Add the node %1</source>
        <translation>Knoten %1 anlegen</translation>
    </message>
    <message numerus="yes">
        <source>Add %Ln nodes</source>
        <translation>
            <numerusform>%Ln Knoten anlegen</numerusform>
            <numerusform>%Ln Knoten anlegen</numerusform>
        </translation>
    </message>
    <message>
        <source>The node %1 added</source>
        <translation>Knoten %1 angelegt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes added</source>
        <translation>
            <numerusform>%Ln Knoten angelegt</numerusform>
            <numerusform>%Ln Knoten angelegt</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove 1 node</source>
        <translation>1 Knoten entfernen</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln nodes</source>
        <translation>
            <numerusform>%Ln Knoten entfernen</numerusform>
            <numerusform>%Ln Knoten entfernen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 node removed</source>
        <translation>1 Knoten entfernt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes removed</source>
        <translation>
            <numerusform>%Ln Knoten entfernt</numerusform>
            <numerusform>%Ln Knoten entfernt</numerusform>
        </translation>
    </message>
    <message>
        <source>Invert the node %1</source>
        <translation>Knoten %1 umkehren</translation>
    </message>
    <message>
        <source>%1 inverted</source>
        <translation>%1 umgekehrt</translation>
    </message>
    <message>
        <source>%1 no longer inverted</source>
        <translation>%1 nicht mehr umgekehrt</translation>
    </message>
    <message>
        <source>Change the node %1</source>
        <translation>Knoten %1 ändern</translation>
    </message>
    <message>
        <source>Tag relationships of %1 switched on</source>
        <translation>Tag-Beziehungen von %1 eingeschaltet</translation>
    </message>
    <message>
        <source>Tag relationships of %1 switched off</source>
        <translation>Tag-Beziehungen von %1 ausgeschaltet</translation>
    </message>
    <message>
        <source>Add %1 to the tag relationships</source>
        <translation>%1 in die Tag-Beziehungen aufnehmen</translation>
    </message>
    <message numerus="yes">
        <source>Add %Ln tag relationships</source>
        <translation>
            <numerusform>%Ln Tag-Beziehung anlegen</numerusform>
            <numerusform>%Ln Tag-Beziehungen anlegen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 added to the tag relationships</source>
        <translation>%1 in die Tag-Beziehungen aufgenommen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships added</source>
        <translation>
            <numerusform>%Ln Tag-Beziehung angelegt</numerusform>
            <numerusform>%Ln Tag-Beziehungen angelegt</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove 1 tag relationship</source>
        <translation>1 Tag-Beziehung entfernen</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln tag relationships</source>
        <translation>
            <numerusform>%Ln Tag-Beziehung entfernen</numerusform>
            <numerusform>%Ln Tag-Beziehungen entfernen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tag relationship removed</source>
        <translation>1 Tag-Beziehung entfernt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships removed</source>
        <translation>
            <numerusform>%Ln Tag-Beziehung entfernt</numerusform>
            <numerusform>%Ln Tag-Beziehungen entfernt</numerusform>
        </translation>
    </message>
    <message>
        <source>Rename the file %1</source>
        <translation>Datei %1 umbenennen</translation>
    </message>
    <message>
        <source>Describe the file %1</source>
        <translation>Datei %1 beschreiben</translation>
    </message>
    <message>
        <source>%1 merged into %2</source>
        <translation>%1 in %2 aufgegangen</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags merged into %1</source>
        <translation>
            <numerusform>%Ln Tag in %1 aufgegangen</numerusform>
            <numerusform>%Ln Tags in %1 aufgegangen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file changed</source>
        <translation>1 Datei geändert</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files changed</source>
        <translation>
            <numerusform>%Ln Datei geändert</numerusform>
            <numerusform>%Ln Dateien geändert</numerusform>
        </translation>
    </message>
    <message>
        <source>Merge %1 into %2</source>
        <translation>%1 mit %2 zusammenführen</translation>
    </message>
    <message numerus="yes">
        <source>Merge %Ln tags into %1</source>
        <translation>
            <numerusform>%Ln Tag mit %1 zusammenführen</numerusform>
            <numerusform>%Ln Tags mit %1 zusammenführen</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>Letters merged into Mail, 3 files changed</comment>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>ErrorJudge</name>
    <message>
        <source>The database is damaged: it tells of more rows than its file has room for.</source>
        <translation>Die Datenbank ist beschädigt: Sie spricht von mehr Zeilen, als ihre Datei fassen kann.</translation>
    </message>
</context>
<context>
    <name>ErrorTeller</name>
    <message>
        <source>Canceled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>The database is busy. Please try again.</source>
        <translation>Die Datenbank ist beschäftigt. Bitte versuchen Sie es noch einmal.</translation>
    </message>
</context>
<context>
    <name>ExportCommand</name>
    <message>
        <source>Exporting</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Cannot export to currently open database!</source>
        <translation>In die geöffnete Datenbank kann nicht exportiert werden!</translation>
    </message>
    <message>
        <source>&quot;%1&quot; already exists.
Do you want to replace it?</source>
        <translation>„%1“ gibt es bereits.
Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>Export Target</source>
        <translation>Ziel des Exports</translation>
    </message>
    <message>
        <source>What is selected has no files to export.</source>
        <translation>Die Auswahl enthält keine Dateien, die exportiert werden könnten.</translation>
    </message>
</context>
<context>
    <name>ExportMenu</name>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Datenbank</translation>
    </message>
    <message>
        <source>Shell</source>
        <translation>Hülle</translation>
    </message>
    <message>
        <source>CSV File</source>
        <translation>CSV-Datei</translation>
    </message>
</context>
<context>
    <name>ExportSummary</name>
    <message>
        <source>Exported to &quot;%1&quot;.
Files: %2</source>
        <translation>Nach „%1“ exportiert.
Dateien: %2</translation>
    </message>
    <message>
        <source>Exported to &quot;%1&quot;.
Files: %2, tags: %3, browsing nodes: %4</source>
        <translation>Nach „%1“ exportiert.
Dateien: %2, Tags: %3, Navigationsknoten: %4</translation>
    </message>
    <message>
        <source>Not exported: %1. %2
%3</source>
        <translation>Nicht exportiert: %1. %2
%3</translation>
    </message>
    <message>
        <source>Not exported, as they are no longer in the database: %1.</source>
        <translation>Nicht exportiert, da nicht mehr in der Datenbank: %1.</translation>
    </message>
    <message>
        <source>Tag relationships not exported, as they are too deep: %1.</source>
        <translation>Nicht exportierte Tag-Beziehungen, da zu tief: %1.</translation>
    </message>
    <message>
        <source>Fields that hold a double quote: %1. It stands in the file as it is, and other programs may take it for the end of the field.</source>
        <translation>Felder, die ein doppeltes Anführungszeichen enthalten: %1. Es steht unverändert in der Datei, und andere Programme können es für das Ende des Feldes halten.</translation>
    </message>
</context>
<context>
    <name>ExportTarget</name>
    <message>
        <source>No database can be made there. The disk may be full, or take no locks.</source>
        <translation>Dort kann keine Datenbank angelegt werden. Vielleicht ist der Datenträger voll oder lässt keine Sperren zu.</translation>
    </message>
    <message>
        <source>A folder has this name.</source>
        <translation>Ein Ordner hat diesen Namen.</translation>
    </message>
    <message>
        <source>A link has this name, and what it leads to is gone.</source>
        <translation>Eine Verknüpfung hat diesen Namen, und ihr Ziel gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>The file there is write-protected.</source>
        <translation>Die Datei dort ist schreibgeschützt.</translation>
    </message>
    <message>
        <source>The database there is in use, or a change of it was broken off: there is a file &quot;%1&quot;.</source>
        <translation>Die Datenbank dort wird benutzt, oder eine Änderung daran wurde abgebrochen: Es gibt eine Datei „%1“.</translation>
    </message>
</context>
<context>
    <name>ExternalFileView</name>
    <message>
        <source>External Files</source>
        <translation>Externe Dateien</translation>
    </message>
</context>
<context>
    <name>ExternalFilesDock</name>
    <message>
        <source>External Files</source>
        <translation>Externe Dateien</translation>
    </message>
</context>
<context>
    <name>FavouriteMenu</name>
    <message>
        <source>Favourite Key</source>
        <translation>Taste für Favoriten</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: free</source>
        <translation>%1: frei</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
</context>
<context>
    <name>FeedbackDialog</name>
    <message>
        <source>Feedback</source>
        <translation>Rückmeldung</translation>
    </message>
    <message>
        <source>Message:</source>
        <translation>Nachricht:</translation>
    </message>
    <message>
        <source>Email address (optional):</source>
        <translation>E-Mail-Adresse (freiwillig):</translation>
    </message>
    <message>
        <source>Version: %1</source>
        <translation>Version: %1</translation>
    </message>
    <message>
        <source>&amp;Send</source>
        <translation>&amp;Senden</translation>
    </message>
    <message>
        <source>Feedback Received</source>
        <translation>Rückmeldung empfangen</translation>
    </message>
    <message>
        <source>Your message has been recorded. Thank you.</source>
        <translation>Ihre Nachricht wurde aufgenommen. Vielen Dank.</translation>
    </message>
    <message>
        <source>Network error</source>
        <translation>Netzwerkfehler</translation>
    </message>
    <message>
        <source>An error occurred while sending feedback.</source>
        <translation>Beim Senden der Rückmeldung ist ein Fehler aufgetreten.</translation>
    </message>
</context>
<context>
    <name>FileActions</name>
    <message>
        <source>List</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>Thumbnails</source>
        <translation>Miniaturbilder</translation>
    </message>
    <message>
        <source>File Search</source>
        <translation>Dateisuche</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>Add Hyperlink</source>
        <translation>Hyperlink hinzufügen</translation>
    </message>
    <message>
        <source>Locate Missing Files</source>
        <translation>Fehlende Dateien suchen</translation>
    </message>
    <message>
        <source>Transfer to Internal</source>
        <translation>In die Datenbank übernehmen</translation>
    </message>
    <message>
        <source>Extract Files</source>
        <translation>Dateien extrahieren</translation>
    </message>
    <message>
        <source>Remove from node</source>
        <translation>Aus Knoten entfernen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>File Tags</source>
        <translation>Tags der Dateien</translation>
    </message>
    <message>
        <source>Browsing Tree Tags</source>
        <translation>Tags des Navigationsbaums</translation>
    </message>
    <message>
        <source>Open for Viewing</source>
        <translation>Zum Ansehen öffnen</translation>
    </message>
    <message>
        <source>Show in Explorer</source>
        <translation>Im Dateimanager anzeigen</translation>
    </message>
    <message>
        <source>Extract File</source>
        <translation>Datei extrahieren</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Show related files</source>
        <translation>Verwandte Dateien anzeigen</translation>
    </message>
    <message>
        <source>Locate missing item</source>
        <translation>Fehlendes suchen</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Delete File</source>
        <translation>Datei löschen</translation>
    </message>
    <message>
        <source>Delete Files</source>
        <translation>Dateien löschen</translation>
    </message>
    <message>
        <source>Delete Link</source>
        <translation>Verknüpfung löschen</translation>
    </message>
    <message>
        <source>Delete Links</source>
        <translation>Verknüpfungen löschen</translation>
    </message>
    <message>
        <source>Delete Item</source>
        <translation>Eintrag löschen</translation>
    </message>
    <message>
        <source>Delete Items</source>
        <translation>Einträge löschen</translation>
    </message>
    <message>
        <source>Locate missing file</source>
        <translation>Fehlende Datei suchen</translation>
    </message>
    <message>
        <source>Locate missing files</source>
        <translation>Fehlende Dateien suchen</translation>
    </message>
    <message>
        <source>Open Externally</source>
        <translation>Extern öffnen</translation>
    </message>
</context>
<context>
    <name>FileCommands</name>
    <message>
        <source>&quot;%1&quot; has no tags that other files could share.</source>
        <translation>„%1“ hat keine Tags, die andere Dateien teilen könnten.</translation>
    </message>
    <message>
        <source>Select the tags in the tags dock first.</source>
        <translation>Wählen Sie zuerst die Tags im Tag-Fenster aus.</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>Add Hyperlink</source>
        <translation>Hyperlink hinzufügen</translation>
    </message>
    <message>
        <source>The database is closed.</source>
        <translation>Die Datenbank ist geschlossen.</translation>
    </message>
    <message>
        <source>Extract to Directory</source>
        <translation>In Ordner extrahieren</translation>
    </message>
    <message>
        <source>The selected files are inside the database already.</source>
        <translation>Die ausgewählten Dateien sind bereits in der Datenbank.</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected link?</source>
        <translation>Möchten Sie die ausgewählte Verknüpfung wirklich löschen?</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected links?</source>
        <translation>Möchten Sie die ausgewählten Verknüpfungen wirklich löschen?</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected file?</source>
        <translation>Möchten Sie die ausgewählte Datei wirklich löschen?</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected files?</source>
        <translation>Möchten Sie die ausgewählten Dateien wirklich löschen?</translation>
    </message>
</context>
<context>
    <name>FileCount</name>
    <message>
        <source>%1 of %2</source>
        <extracomment>at the end of a tag&apos;s row: how many of its files are shown, and how many it has</extracomment>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1, 1 file</source>
        <extracomment>what a screen reader says of a tag or a node: its name, and how many files it has</extracomment>
        <translation>%1, 1 Datei</translation>
    </message>
    <message numerus="yes">
        <source>%1, %Ln files</source>
        <translation>
            <numerusform>%1, %Ln Datei</numerusform>
            <numerusform>%1, %Ln Dateien</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1, %2 of %Ln files</source>
        <extracomment>the same: its name, how many of its files are shown, and how many it has</extracomment>
        <translation>
            <numerusform>%1, %2 von %Ln Datei</numerusform>
            <numerusform>%1, %2 von %Ln Dateien</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileExportDialog</name>
    <message>
        <source>Export Options</source>
        <translation>Exportoptionen</translation>
    </message>
    <message>
        <source>What should be exported beside the files and their tags?</source>
        <translation>Was soll außer den Dateien und ihren Tags exportiert werden?</translation>
    </message>
    <message>
        <source>File descriptions</source>
        <translation>Dateibeschreibungen</translation>
    </message>
    <message>
        <source>Tag relationships</source>
        <translation>Tag-Beziehungen</translation>
    </message>
    <message>
        <source>Tag groups</source>
        <translation>Tag-Gruppen</translation>
    </message>
</context>
<context>
    <name>FileImporter</name>
    <message>
        <source>Files that could not be read or written: %1</source>
        <translation>Dateien, die nicht gelesen oder geschrieben werden konnten: %1</translation>
    </message>
    <message>
        <source>Copying files...</source>
        <translation>Dateien werden kopiert&#xa0;…</translation>
    </message>
</context>
<context>
    <name>FileListModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Ordner</translation>
    </message>
</context>
<context>
    <name>FileLocationDialog</name>
    <message>
        <source>File Location</source>
        <translation>Dateien suchen</translation>
    </message>
    <message>
        <source>Missing External Files</source>
        <translation>Fehlende externe Dateien</translation>
    </message>
    <message>
        <source>The following files have been moved from the locations recorded in the database. They can be located by double-clicking in the list or specifying folders to look in.</source>
        <translation>Die folgenden Dateien liegen nicht mehr dort, wo die Datenbank sie verzeichnet. Suchen Sie sie durch einen Doppelklick in der Liste, oder geben Sie Ordner an, die durchsucht werden sollen.</translation>
    </message>
    <message>
        <source>Folders to Check In</source>
        <translation>Zu durchsuchende Ordner</translation>
    </message>
    <message>
        <source>Add Folder</source>
        <translation>Ordner hinzufügen</translation>
    </message>
    <message>
        <source>Remove Folder</source>
        <translation>Ordner entfernen</translation>
    </message>
    <message>
        <source>Delete Remaining Links</source>
        <translation>Übrige Verknüpfungen löschen</translation>
    </message>
    <message>
        <source>All Files (*.*)</source>
        <translation>Alle Dateien (*.*)</translation>
    </message>
    <message>
        <source>Locate File</source>
        <translation>Datei suchen</translation>
    </message>
    <message>
        <source>The database has this file already. One file cannot take two places.</source>
        <translation>Die Datenbank hat diese Datei schon. Eine Datei kann nicht zwei Stellen einnehmen.</translation>
    </message>
    <message>
        <source>Found: %1 of %2.</source>
        <translation>Gefunden: %1 von %2.</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected links?</source>
        <translation>Möchten Sie die ausgewählten Verknüpfungen wirklich löschen?</translation>
    </message>
</context>
<context>
    <name>FileModificationDialog</name>
    <message>
        <source>File Details Updated</source>
        <translation>Angaben zu Dateien aktualisiert</translation>
    </message>
    <message>
        <source>Updated Files</source>
        <translation>Aktualisierte Dateien</translation>
    </message>
    <message>
        <source>Deleted Files</source>
        <translation>Gelöschte Dateien</translation>
    </message>
    <message>
        <source>Don&apos;t tell me again</source>
        <translation>Nicht mehr melden</translation>
    </message>
    <message>
        <source>The following file has been edited or replaced.
Details have been updated.</source>
        <translation>Die folgende Datei wurde bearbeitet oder ersetzt.
Die Angaben wurden aktualisiert.</translation>
    </message>
    <message>
        <source>The following files have been edited or replaced.
Details have been updated.</source>
        <translation>Die folgenden Dateien wurden bearbeitet oder ersetzt.
Die Angaben wurden aktualisiert.</translation>
    </message>
    <message>
        <source>The following file was replaced externally and has now duplicate of the other file in the database.
This file has been deleted from the database.</source>
        <translation>Die folgende Datei wurde außerhalb ersetzt und gleicht nun einer anderen Datei der Datenbank.
Sie wurde aus der Datenbank gelöscht.</translation>
    </message>
    <message>
        <source>The following files were replaced externally and have now duplicates of the other files in the database.
These files have been deleted from the database.</source>
        <translation>Die folgenden Dateien wurden außerhalb ersetzt und gleichen nun anderen Dateien der Datenbank.
Sie wurden aus der Datenbank gelöscht.</translation>
    </message>
</context>
<context>
    <name>FileOpening</name>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Failed opening hyperlink.</source>
        <translation>Der Hyperlink konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>File No Longer Present</source>
        <translation>Datei nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>This file is no longer present in its original path. It may have been moved, deleted or renamed.</source>
        <translation>Diese Datei ist nicht mehr an ihrem ursprünglichen Ort. Sie wurde vielleicht verschoben, gelöscht oder umbenannt.</translation>
    </message>
    <message>
        <source>Error opening file</source>
        <translation>Fehler beim Öffnen der Datei</translation>
    </message>
    <message>
        <source>Vorna is unable to open this file. There may not be any application associated with the file type.</source>
        <translation>Vorna kann diese Datei nicht öffnen. Vielleicht ist dem Dateityp kein Programm zugeordnet.</translation>
    </message>
    <message>
        <source>This file would start a program, which Vorna does not do. Start it from its folder if you trust it.</source>
        <translation>Diese Datei würde ein Programm starten, was Vorna nicht tut. Starten Sie sie aus ihrem Ordner, wenn Sie ihr trauen.</translation>
    </message>
    <message>
        <source>Vorna opens files and folders only, and this is neither.</source>
        <translation>Vorna öffnet nur Dateien und Ordner, und das hier ist keines von beiden.</translation>
    </message>
    <message>
        <source>This file would start a program, which Vorna does not do out of a database. Extract it if you trust it, and start it from there.</source>
        <translation>Diese Datei würde ein Programm starten, was Vorna aus einer Datenbank heraus nicht tut. Extrahieren Sie sie, wenn Sie ihr trauen, und starten Sie sie von dort.</translation>
    </message>
    <message>
        <source>The disk with &quot;%1&quot; does not answer.</source>
        <translation>Der Datenträger mit „%1“ antwortet nicht.</translation>
    </message>
</context>
<context>
    <name>FileOperationProgress</name>
    <message>
        <source>Vorna File Operation</source>
        <translation>Vorna – Dateivorgang</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
</context>
<context>
    <name>FileOperationProvider</name>
    <message>
        <source>Add Hyperlink</source>
        <translation>Hyperlink hinzufügen</translation>
    </message>
</context>
<context>
    <name>FileOperationWorker</name>
    <message>
        <source>Exporting files...</source>
        <translation>Dateien werden exportiert&#xa0;…</translation>
    </message>
    <message>
        <source>Their contents in the database are damaged:</source>
        <translation>Ihr Inhalt in der Datenbank ist beschädigt:</translation>
    </message>
    <message>
        <source>The database says: %1.</source>
        <translation>Die Datenbank meldet: %1.</translation>
    </message>
    <message>
        <source>Gathering file information</source>
        <translation>Angaben zu den Dateien werden gesammelt</translation>
    </message>
    <message>
        <source>The tags for the folders could not be made, so nothing was added.</source>
        <translation>Die Tags für die Ordner konnten nicht angelegt werden, deshalb wurde nichts hinzugefügt.</translation>
    </message>
    <message>
        <source>Error adding files</source>
        <translation>Fehler beim Hinzufügen von Dateien</translation>
    </message>
    <message>
        <source>Creating hyperlinks into database...</source>
        <translation>Hyperlinks werden in die Datenbank aufgenommen&#xa0;…</translation>
    </message>
    <message>
        <source>A database-related duplicate management error occurred while preparing to add files</source>
        <translation>Bei der Vorbereitung des Hinzufügens trat in der Duplikatverwaltung ein Fehler der Datenbank auf</translation>
    </message>
    <message>
        <source>Files left out</source>
        <translation>Ausgelassene Dateien</translation>
    </message>
    <message>
        <source>Linking to files...</source>
        <translation>Dateien werden verknüpft&#xa0;…</translation>
    </message>
    <message>
        <source>Copying files into database...</source>
        <translation>Dateien werden in die Datenbank kopiert&#xa0;…</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>The database is in use by another program.</source>
        <translation>Die Datenbank wird von einem anderen Programm benutzt.</translation>
    </message>
    <message>
        <source>The export was canceled, and nothing was written to &quot;%1&quot;.</source>
        <translation>Der Export wurde abgebrochen, und nach „%1“ wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>The file could not get its name.</source>
        <translation>Die Datei konnte ihren Namen nicht erhalten.</translation>
    </message>
    <message>
        <source>Nothing was exported to &quot;%1&quot;.

The reason: %2</source>
        <translation>Nach „%1“ wurde nichts exportiert.

Der Grund: %2</translation>
    </message>
    <message>
        <source>Exporting</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>%1 (only its beginning)</source>
        <translation>%1 (nur der Anfang)</translation>
    </message>
    <message>
        <source>Extracting Files...</source>
        <translation>Dateien werden extrahiert&#xa0;…</translation>
    </message>
    <message>
        <source>Only its beginning was written:
%1</source>
        <translation>Nur der Anfang wurde geschrieben:
%1</translation>
    </message>
    <message>
        <source>An error has occurred while extracting a file. This may be a memory-related problem, so closing any applications which consume large amounts of memory should fix it.</source>
        <translation>Beim Extrahieren einer Datei ist ein Fehler aufgetreten. Vielleicht reicht der Speicher nicht aus; dann hilft es, Programme zu schließen, die viel Speicher belegen.</translation>
    </message>
    <message>
        <source>The system says: %1</source>
        <translation>Das System meldet: %1</translation>
    </message>
    <message>
        <source>Not written:
%1</source>
        <translation>Nicht geschrieben:
%1</translation>
    </message>
    <message>
        <source>Error extracting file</source>
        <translation>Fehler beim Extrahieren</translation>
    </message>
    <message>
        <source>This file could not be read, or could not get its name in the folder, and was not extracted:

%1</source>
        <translation>Diese Datei konnte nicht gelesen werden oder im Ordner ihren Namen nicht erhalten und wurde nicht extrahiert:

%1</translation>
    </message>
    <message>
        <source>These files could not be read, or could not get their names in the folder, and were not extracted:

%1</source>
        <translation>Diese Dateien konnten nicht gelesen werden oder im Ordner ihre Namen nicht erhalten und wurden nicht extrahiert:

%1</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Deleting files...</source>
        <translation>Dateien werden gelöscht&#xa0;…</translation>
    </message>
    <message>
        <source>Extracting files...</source>
        <translation>Dateien werden extrahiert&#xa0;…</translation>
    </message>
    <message>
        <source>Extracting to temporary file...</source>
        <translation>Eine temporäre Datei wird extrahiert&#xa0;…</translation>
    </message>
    <message>
        <source>Exporting...</source>
        <translation>Export läuft&#xa0;…</translation>
    </message>
    <message>
        <source>Importing...</source>
        <translation>Import läuft&#xa0;…</translation>
    </message>
    <message>
        <source>Transferring files into database...</source>
        <translation>Dateien werden in die Datenbank übernommen&#xa0;…</translation>
    </message>
    <message>
        <source>Remaking thumbnails...</source>
        <translation>Miniaturbilder werden neu erstellt&#xa0;…</translation>
    </message>
    <message>
        <source>This picture could not be read and keeps its thumbnail:

%1</source>
        <translation>Dieses Bild konnte nicht gelesen werden und behält sein Miniaturbild:

%1</translation>
    </message>
    <message>
        <source>Thumbnails not remade</source>
        <translation>Nicht neu erstellte Miniaturbilder</translation>
    </message>
    <message>
        <source>This file could not be read, or changed meanwhile, and remains external:

%1</source>
        <translation>Diese Datei konnte nicht gelesen werden oder hat sich inzwischen geändert und bleibt extern:

%1</translation>
    </message>
    <message>
        <source>These files could not be read, or changed meanwhile, and remain external:

%1</source>
        <translation>Diese Dateien konnten nicht gelesen werden oder haben sich inzwischen geändert und bleiben extern:

%1</translation>
    </message>
    <message>
        <source>Error transferring files</source>
        <translation>Fehler beim Übernehmen der Dateien</translation>
    </message>
    <message>
        <source>Adding %1</source>
        <translation>%1 wird hinzugefügt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln pictures could not be read and keep their thumbnails:

%1</source>
        <translation>
            <numerusform>%Ln Bild konnte nicht gelesen werden und behält sein Miniaturbild:

%1</numerusform>
            <numerusform>%Ln Bilder konnten nicht gelesen werden und behalten ihre Miniaturbilder:

%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Transferring %1</source>
        <translation>%1 wird übernommen</translation>
    </message>
    <message>
        <source>The tag &quot;%1&quot;</source>
        <translation>Das Tag „%1“</translation>
    </message>
    <message>
        <source>The tag group &quot;%1&quot;</source>
        <translation>Die Tag-Gruppe „%1“</translation>
    </message>
    <message>
        <source>Their pages in the database file are damaged:</source>
        <translation>Ihre Seiten in der Datenbankdatei sind beschädigt:</translation>
    </message>
    <message>
        <source>Changing the tags of files...</source>
        <translation>Tags von Dateien werden geändert …</translation>
    </message>
    <message>
        <source>The disk with &quot;%1&quot; does not answer, so nothing was added.</source>
        <translation>Der Datenträger mit „%1“ antwortet nicht, daher wurde nichts hinzugefügt.</translation>
    </message>
    <message>
        <source>Merging tags...</source>
        <translation>Tags werden zusammengeführt …</translation>
    </message>
    <message>
        <source>The tags have been removed meanwhile.</source>
        <translation>Die Tags wurden inzwischen entfernt.</translation>
    </message>
    <message>
        <source>Merge Tags</source>
        <translation>Tags zusammenführen</translation>
    </message>
</context>
<context>
    <name>FileRenamer</name>
    <message>
        <source>The name of a file must not contain &quot;/&quot;, nor be &quot;.&quot; or &quot;..&quot;.</source>
        <translation>Der Name einer Datei darf kein „/“ enthalten und nicht „.“ oder „..“ lauten.</translation>
    </message>
    <message>
        <source>The file could not be renamed.</source>
        <translation>Die Datei konnte nicht umbenannt werden.</translation>
    </message>
    <message>
        <source>Rename File</source>
        <translation>Datei umbenennen</translation>
    </message>
    <message>
        <source>There is already a file with this name.</source>
        <translation>Eine Datei mit diesem Namen gibt es bereits.</translation>
    </message>
    <message>
        <source>The other file is in the database too and cannot be replaced.</source>
        <translation>Auch die andere Datei ist in der Datenbank und kann nicht ersetzt werden.</translation>
    </message>
</context>
<context>
    <name>FileSearch</name>
    <message>
        <source>Find Files</source>
        <translation>Dateien suchen</translation>
    </message>
</context>
<context>
    <name>FileSorting</name>
    <message>
        <source>Sort By</source>
        <translation>Sortieren nach</translation>
    </message>
    <message>
        <source>As Added</source>
        <translation>Reihenfolge des Hinzufügens</translation>
    </message>
    <message>
        <source>Ascending</source>
        <translation>Aufsteigend</translation>
    </message>
    <message>
        <source>Descending</source>
        <translation>Absteigend</translation>
    </message>
</context>
<context>
    <name>FileTagging</name>
    <message>
        <source>Add Tags:</source>
        <translation>Tags geben:</translation>
    </message>
    <message>
        <source>Add Tags...</source>
        <translation>Tags geben …</translation>
    </message>
    <message>
        <source>Favourite Tags</source>
        <translation>Bevorzugte Tags</translation>
    </message>
    <message>
        <source>&amp;Pin</source>
        <translation>Anhe&amp;ften</translation>
    </message>
    <message>
        <source>Return tags and goes on to the next file (Alt+P)</source>
        <translation>Die Eingabetaste gibt die Tags und geht zur nächsten Datei (Alt+P)</translation>
    </message>
    <message>
        <source>Add Tags (%1)</source>
        <translation>Tags geben (%1)</translation>
    </message>
    <message>
        <source>No tag</source>
        <translation>Kein Tag</translation>
    </message>
</context>
<context>
    <name>FileTagsDialog</name>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>There are no tags to choose from.</source>
        <translation>Es gibt keine Tags zur Auswahl.</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tag from this file</source>
        <translation>Kreuzen Sie an, ob diese Datei das folgende Tag haben soll</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tag from these files</source>
        <translation>Kreuzen Sie an, ob diese Dateien das folgende Tag haben sollen</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tags from this file</source>
        <translation>Kreuzen Sie an, welche der folgenden Tags diese Datei haben soll</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tags from these files</source>
        <translation>Kreuzen Sie an, welche der folgenden Tags diese Dateien haben sollen</translation>
    </message>
    <message numerus="yes">
        <source>On %1 of %Ln files</source>
        <translation>
            <numerusform>Bei %1 von %Ln Datei</numerusform>
            <numerusform>Bei %1 von %Ln Dateien</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileViews</name>
    <message>
        <source>Files as thumbnails</source>
        <translation>Dateien als Miniaturbilder</translation>
    </message>
    <message>
        <source>Files as a table</source>
        <translation>Dateien als Tabelle</translation>
    </message>
</context>
<context>
    <name>FolderExtraction</name>
    <message>
        <source>Comparing with the files in the folder...</source>
        <translation>Vergleich mit den Dateien im Ordner&#xa0;…</translation>
    </message>
</context>
<context>
    <name>GroupImporter</name>
    <message>
        <source>Tag groups without a name: %1</source>
        <translation>Tag-Gruppen ohne Namen: %1</translation>
    </message>
</context>
<context>
    <name>HelpWindow</name>
    <message>
        <source>Quick Start Guide</source>
        <translation>Schnelleinstieg</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
</context>
<context>
    <name>HyperlinkCheck</name>
    <message>
        <source>Hyperlink must not be empty.</source>
        <translation>Der Hyperlink darf nicht leer sein.</translation>
    </message>
    <message>
        <source>Hyperlinks is file on the local file system</source>
        <translation>Der Hyperlink ist eine Datei des lokalen Dateisystems</translation>
    </message>
    <message>
        <source>The address has %1 signs. At most %2 can be kept.</source>
        <translation>Die Adresse hat %1 Zeichen. Höchstens %2 können aufbewahrt werden.</translation>
    </message>
    <message>
        <source>The address holds control signs, which no address has.</source>
        <translation>Die Adresse enthält Steuerzeichen, die in keiner Adresse vorkommen.</translation>
    </message>
    <message>
        <source>This is not a valid address: %1.</source>
        <translation>Das ist keine gültige Adresse: %1.</translation>
    </message>
    <message>
        <source>Longer than %1 signs: %2</source>
        <translation>Länger als %1 Zeichen: %2</translation>
    </message>
    <message>
        <source>With control signs: %1</source>
        <translation>Mit Steuerzeichen: %1</translation>
    </message>
    <message>
        <source>Of files that are not there: %1</source>
        <translation>Von Dateien, die es nicht gibt: %1</translation>
    </message>
    <message>
        <source>Not valid: %1</source>
        <translation>Ungültig: %1</translation>
    </message>
    <message>
        <source>One hyperlink was not added:</source>
        <translation>Ein Hyperlink wurde nicht hinzugefügt:</translation>
    </message>
    <message numerus="yes">
        <source>%Ln hyperlinks were not added:</source>
        <translation>
            <numerusform>%Ln Hyperlink wurde nicht hinzugefügt:</numerusform>
            <numerusform>%Ln Hyperlinks wurden nicht hinzugefügt:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ImportReport</name>
    <message>
        <source>Imported from &quot;%1&quot;:</source>
        <translation>Aus „%1“ importiert:</translation>
    </message>
    <message>
        <source>New files: %1</source>
        <translation>Neue Dateien: %1</translation>
    </message>
    <message>
        <source>Files that were here already: %1</source>
        <translation>Schon vorhandene Dateien: %1</translation>
    </message>
    <message>
        <source>New tags: %1</source>
        <translation>Neue Tags: %1</translation>
    </message>
    <message>
        <source>New links between tags and files: %1</source>
        <translation>Neue Zuordnungen von Tags zu Dateien: %1</translation>
    </message>
    <message>
        <source>New tag groups: %1</source>
        <translation>Neue Tag-Gruppen: %1</translation>
    </message>
    <message>
        <source>New browsing nodes: %1</source>
        <translation>Neue Navigationsknoten: %1</translation>
    </message>
    <message>
        <source>New tag relationships: %1</source>
        <translation>Neue Tag-Beziehungen: %1</translation>
    </message>
    <message>
        <source>Changed descriptions: %1</source>
        <translation>Geänderte Beschreibungen: %1</translation>
    </message>
    <message>
        <source>Not imported:</source>
        <translation>Nicht importiert:</translation>
    </message>
</context>
<context>
    <name>ImportSource</name>
    <message>
        <source>The file is missing.</source>
        <translation>Die Datei fehlt.</translation>
    </message>
    <message>
        <source>This is the open database itself.</source>
        <translation>Das ist die geöffnete Datenbank selbst.</translation>
    </message>
    <message>
        <source>The file cannot be opened: %1</source>
        <translation>Die Datei kann nicht geöffnet werden: %1</translation>
    </message>
    <message>
        <source>It holds parts that Vorna did not make, such as views or triggers.</source>
        <translation>Sie enthält Teile, die nicht von Vorna stammen, etwa Sichten oder Trigger.</translation>
    </message>
    <message>
        <source>It is no Vorna database.</source>
        <translation>Es ist keine Vorna-Datenbank.</translation>
    </message>
    <message>
        <source>Another program is writing to it. Please try again.</source>
        <translation>Ein anderes Programm schreibt gerade hinein. Bitte versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>A change to it was broken off. Open it once, and it is put in order.</source>
        <translation>Eine Änderung daran wurde abgebrochen. Öffnen Sie die Datenbank einmal, dann wird sie in Ordnung gebracht.</translation>
    </message>
    <message>
        <source>It cannot be read as a database: %1</source>
        <translation>Sie kann nicht als Datenbank gelesen werden: %1</translation>
    </message>
</context>
<context>
    <name>ImportStatements</name>
    <message>
        <source>There are no free ids in its table &quot;%1&quot;.</source>
        <translation>In ihrer Tabelle „%1“ sind keine Nummern mehr frei.</translation>
    </message>
</context>
<context>
    <name>LeftOutFiles</name>
    <message>
        <source>1 file has a name that cannot be read:</source>
        <translation>1 Datei hat einen Namen, der nicht gelesen werden kann:</translation>
    </message>
    <message>
        <source>Files left out because the names of their folders cannot be read: %1</source>
        <translation>Dateien, die ausgelassen wurden, weil die Namen ihrer Ordner nicht gelesen werden können: %1</translation>
    </message>
    <message>
        <source>1 file or folder could not be read:</source>
        <translation>1 Datei oder Ordner konnte nicht gelesen werden:</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files have names that cannot be read:</source>
        <translation>
            <numerusform>%Ln Datei hat einen Namen, der nicht gelesen werden kann:</numerusform>
            <numerusform>%Ln Dateien haben Namen, die nicht gelesen werden können:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files or folders could not be read:</source>
        <translation>
            <numerusform>%Ln Datei oder Ordner konnte nicht gelesen werden:</numerusform>
            <numerusform>%Ln Dateien oder Ordner konnten nicht gelesen werden:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LoadingNotice</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Loading &quot;%1&quot;...</source>
        <translation>„%1“ wird geladen&#xa0;…</translation>
    </message>
</context>
<context>
    <name>MainFilesView</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message numerus="yes">
        <source>%1 selected</source>
        <translation>
            <numerusform>%1 ausgewählt</numerusform>
            <numerusform>%1 ausgewählt</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 Datei</translation>
    </message>
    <message>
        <source>No database is open.
Open one or make a new one in the Database menu.</source>
        <translation>Keine Datenbank ist geöffnet.
Öffnen Sie eine im Menü „Datenbank“, oder legen Sie dort eine neue an.</translation>
    </message>
    <message>
        <source>Choose a browsing node or tags to see their files.
Nothing can be changed: this database is read-only.</source>
        <translation>Wählen Sie einen Navigationsknoten oder Tags, um deren Dateien zu sehen.
Geändert werden kann nichts: Diese Datenbank ist schreibgeschützt.</translation>
    </message>
    <message>
        <source>Choose a browsing node or tags to see their files.
Drop files or folders here to add them.</source>
        <translation>Wählen Sie einen Navigationsknoten oder Tags, um deren Dateien zu sehen.
Legen Sie hier Dateien oder Ordner ab, um sie hinzuzufügen.</translation>
    </message>
    <message>
        <source>No file matches the search.</source>
        <translation>Keine Datei passt zur Suche.</translation>
    </message>
    <message>
        <source>No files here.</source>
        <translation>Hier sind keine Dateien.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>This is the last file.</source>
        <translation>Dies ist die letzte Datei.</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>MainUi</name>
    <message>
        <source>&amp;Database</source>
        <translation>&amp;Datenbank</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Knoten</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Tag Filter</source>
        <translation>Tag-Filter</translation>
    </message>
    <message>
        <source>Tag tools</source>
        <translation>Tag-Werkzeuge</translation>
    </message>
    <message>
        <source>File tools</source>
        <translation>Dateiwerkzeuge</translation>
    </message>
    <message>
        <source>View-mode</source>
        <translation>Ansichtsart</translation>
    </message>
    <message>
        <source>Search Files</source>
        <translation>Dateien suchen</translation>
    </message>
    <message>
        <source>Link Tags to Files</source>
        <translation>Tags den Dateien zuordnen</translation>
    </message>
    <message>
        <source>File name, description or ID code</source>
        <translation>Dateiname, Beschreibung oder ID-Code</translation>
    </message>
    <message>
        <source>Search Files - Name, Description, ID Code</source>
        <translation>Dateien suchen – Name, Beschreibung, ID-Code</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Edit Mode</source>
        <translation>Bearbeitungsmodus</translation>
    </message>
</context>
<context>
    <name>MainViewController</name>
    <message>
        <source>Error opening file</source>
        <translation>Fehler beim Öffnen der Datei</translation>
    </message>
    <message>
        <source>The file could not be copied out of the database into the folder for temporary files, %1. It may be full or write-protected.</source>
        <translation>Die Datei konnte nicht aus der Datenbank in den Ordner für temporäre Dateien, %1, kopiert werden. Er ist vielleicht voll oder schreibgeschützt.</translation>
    </message>
    <message>
        <source>This file would start a program, which Vorna does not do out of a database. Extract it if you trust it, and start it from there.</source>
        <translation>Diese Datei würde ein Programm starten, was Vorna aus einer Datenbank heraus nicht tut. Extrahieren Sie sie, wenn Sie ihr trauen, und starten Sie sie von dort.</translation>
    </message>
    <message>
        <source>Vorna is unable to open this file. There may not be any application associated with the file type.</source>
        <translation>Vorna kann diese Datei nicht öffnen. Vielleicht ist dem Dateityp kein Programm zugeordnet.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Failed to Open Database</source>
        <translation>Datenbank konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>The selected database could not be opened successfully.</source>
        <translation>Die ausgewählte Datenbank konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Open Database</source>
        <translation>Datenbank öffnen</translation>
    </message>
    <message>
        <source>Database Info</source>
        <translation>Über die Datenbank</translation>
    </message>
    <message>
        <source>Version of Vorna used to create the currently open database: %1
Database permissions: %2</source>
        <translation>Version von Vorna, mit der die geöffnete Datenbank angelegt wurde: %1
Rechte der Datenbank: %2</translation>
    </message>
    <message>
        <source>read-only</source>
        <translation>schreibgeschützt</translation>
    </message>
    <message>
        <source>writable</source>
        <translation>schreibbar</translation>
    </message>
    <message>
        <source>Nameplate</source>
        <translation>Über Vorna</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Tag Group Name Conflict</source>
        <translation>Tag-Gruppe gleichen Namens</translation>
    </message>
    <message>
        <source>A tag group with this name already exists.</source>
        <translation>Eine Tag-Gruppe mit diesem Namen gibt es bereits.</translation>
    </message>
    <message>
        <source>Tag already exists</source>
        <translation>Tag gibt es bereits</translation>
    </message>
    <message>
        <source>There is already a tag with this name.</source>
        <translation>Ein Tag mit diesem Namen gibt es bereits.</translation>
    </message>
    <message>
        <source>Vorna - %1</source>
        <translation>Vorna – %1</translation>
    </message>
</context>
<context>
    <name>MergeTagsDialog</name>
    <message>
        <source>Merge Tags</source>
        <translation>Tags zusammenführen</translation>
    </message>
    <message>
        <source>Which of the tags stays?</source>
        <translation>Welcher der Tags bleibt?</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>Zusammenführen</translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 Datei</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>the name of a tag and its files</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Tags that go: %1. Their links to files: %2, their nodes: %3, their tag relationships: %4, and their places in groups go to the tag that stays. What it has already, and what would stand below itself, falls away. Edit &gt; Undo takes all of it back.</source>
        <translation>Tags, die verschwinden: %1. Ihre Verknüpfungen mit Dateien: %2, ihre Knoten: %3, ihre Tag-Beziehungen: %4 und ihre Plätze in Gruppen gehen an den Tag über, der bleibt. Was er schon hat und was unter sich selbst stünde, entfällt. Bearbeiten &gt; Rückgängig nimmt alles zurück.</translation>
    </message>
</context>
<context>
    <name>MetaInfoDock</name>
    <message>
        <source>Link to a file</source>
        <translation>Verknüpfung mit einer Datei</translation>
    </message>
    <message>
        <source>Inside the database</source>
        <translation>In der Datenbank</translation>
    </message>
    <message>
        <source>Hyperlink</source>
        <translation>Hyperlink</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 Byte</translation>
    </message>
    <message numerus="yes">
        <source>%1 bytes</source>
        <translation>
            <numerusform>%1 Byte</numerusform>
            <numerusform>%1 Bytes</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Metadata</source>
        <translation>Metadaten</translation>
    </message>
    <message>
        <source>Tags:</source>
        <translation>Tags:</translation>
    </message>
    <message>
        <source>Description:</source>
        <translation>Beschreibung:</translation>
    </message>
    <message>
        <source>Kept as:</source>
        <translation>Aufbewahrt als:</translation>
    </message>
    <message>
        <source>Size:</source>
        <translation>Größe:</translation>
    </message>
    <message>
        <source>Modified:</source>
        <translation>Geändert:</translation>
    </message>
    <message>
        <source>Added:</source>
        <translation>Hinzugefügt:</translation>
    </message>
    <message>
        <source>ID code:</source>
        <translation>ID-Code:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>No file selected</source>
        <translation>Keine Datei ausgewählt</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files selected</source>
        <translation>
            <numerusform>%Ln Datei ausgewählt</numerusform>
            <numerusform>%Ln Dateien ausgewählt</numerusform>
        </translation>
    </message>
    <message>
        <source>none in common</source>
        <translation>keine gemeinsam</translation>
    </message>
</context>
<context>
    <name>MetadataMerger</name>
    <message>
        <source>Descriptions that would become too long: %1</source>
        <translation>Beschreibungen, die zu lang würden: %1</translation>
    </message>
</context>
<context>
    <name>MiscOperationThread</name>
    <message>
        <source>File Extraction</source>
        <translation>Dateien extrahieren</translation>
    </message>
    <message>
        <source>Use New Name</source>
        <translation>Neuen Namen verwenden</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>There is already a file named %1 in folder %2. Do you instead want to rename the file to %3?</source>
        <translation>Im Ordner %2 gibt es bereits eine Datei mit dem Namen %1. Möchten Sie die Datei stattdessen in %3 umbenennen?</translation>
    </message>
    <message>
        <source>There is a different file already in the folder %1 with the same name as file &apos;%2&apos;. Do you want to replace it or create a new file named &apos;%3&apos;?</source>
        <translation>Im Ordner %1 gibt es bereits eine andere Datei, die so heißt wie „%2“. Möchten Sie sie ersetzen oder eine neue Datei mit dem Namen „%3“ anlegen?</translation>
    </message>
</context>
<context>
    <name>MultipleFileConflictHandler</name>
    <message>
        <source>File Extraction Conflicts</source>
        <translation>Konflikte beim Extrahieren</translation>
    </message>
    <message>
        <source>Set Replace All</source>
        <translation>Alle ersetzen</translation>
    </message>
    <message>
        <source>Set Use New Names</source>
        <translation>Neue Namen verwenden</translation>
    </message>
    <message>
        <source>There are already different files in folder &apos;%1&apos; with the same names as the following database files.
Please choose how these files should be extracted.</source>
        <translation>Im Ordner „%1“ gibt es bereits andere Dateien, die so heißen wie die folgenden Dateien der Datenbank.
Bitte wählen Sie, wie diese Dateien extrahiert werden sollen.</translation>
    </message>
</context>
<context>
    <name>NameInput</name>
    <message>
        <source>Group name</source>
        <translation>Gruppenname</translation>
    </message>
    <message>
        <source>Name of new group:</source>
        <translation>Name der neuen Gruppe:</translation>
    </message>
</context>
<context>
    <name>NameMatchModel</name>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Last Modified</source>
        <translation>Zuletzt geändert</translation>
    </message>
    <message>
        <source>Database file: %1</source>
        <translation>Datei der Datenbank: %1</translation>
    </message>
</context>
<context>
    <name>NamesLine</name>
    <message>
        <source>Names of tags, parted by commas</source>
        <translation>Namen von Tags, durch Kommas getrennt</translation>
    </message>
    <message>
        <source>Close (Esc)</source>
        <translation>Schließen (Esc)</translation>
    </message>
</context>
<context>
    <name>NavigationBar</name>
    <message>
        <source>Navigation</source>
        <translation>Navigation</translation>
    </message>
    <message>
        <source>Previous image</source>
        <translation>Voriges Bild</translation>
    </message>
    <message>
        <source>Next image</source>
        <translation>Nächstes Bild</translation>
    </message>
    <message>
        <source>Rotate anti-clockwise</source>
        <translation>Gegen den Uhrzeigersinn drehen</translation>
    </message>
    <message>
        <source>Rotate clockwise</source>
        <translation>Im Uhrzeigersinn drehen</translation>
    </message>
    <message>
        <source>Fullscreen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Start slideshow</source>
        <translation>Diashow starten</translation>
    </message>
    <message>
        <source>Save changes</source>
        <translation>Änderungen speichern</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>Original size</source>
        <translation>Originalgröße</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Anpassen</translation>
    </message>
</context>
<context>
    <name>NodeImporter</name>
    <message>
        <source>Browsing nodes with values that are no numbers: %1</source>
        <translation>Navigationsknoten mit Werten, die keine Zahlen sind: %1</translation>
    </message>
</context>
<context>
    <name>NodeTyping</name>
    <message>
        <source>Add nodes:</source>
        <translation>Knoten anlegen:</translation>
    </message>
    <message>
        <source>Add Node...</source>
        <translation>Knoten anlegen …</translation>
    </message>
    <message>
        <source>Add Node Below...</source>
        <translation>Knoten darunter anlegen …</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Below %1:</source>
        <translation>Unter %1:</translation>
    </message>
</context>
<context>
    <name>OpeningProgress</name>
    <message>
        <source>Opening database... %1 %</source>
        <translation>Datenbank wird geöffnet&#xa0;… %1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>OperationReport</name>
    <message>
        <source>Files added: %1 of %2.</source>
        <translation>Hinzugefügte Dateien: %1 von %2.</translation>
    </message>
    <message>
        <source>Files linked: %1 of %2.</source>
        <translation>Verknüpfte Dateien: %1 von %2.</translation>
    </message>
    <message>
        <source>Files deleted: %1 of %2.</source>
        <translation>Gelöschte Dateien: %1 von %2.</translation>
    </message>
    <message>
        <source>Files extracted: %1 of %2.</source>
        <translation>Extrahierte Dateien: %1 von %2.</translation>
    </message>
    <message>
        <source>Files located: %1 of %2.</source>
        <translation>Gefundene Dateien: %1 von %2.</translation>
    </message>
    <message>
        <source>Files transferred: %1 of %2.</source>
        <translation>Übernommene Dateien: %1 von %2.</translation>
    </message>
    <message>
        <source>Thumbnails remade: %1 of %2.</source>
        <translation>Neu erstellte Miniaturbilder: %1 von %2.</translation>
    </message>
    <message>
        <source>Files whose tags were changed: %1 of %2.</source>
        <translation>Dateien mit geänderten Tags: %1 von %2.</translation>
    </message>
</context>
<context>
    <name>PopupMessager</name>
    <message>
        <source>Tag already exists</source>
        <translation>Tag gibt es bereits</translation>
    </message>
    <message>
        <source>There is already a tag with this name.</source>
        <translation>Ein Tag mit diesem Namen gibt es bereits.</translation>
    </message>
</context>
<context>
    <name>PostgresDBManager</name>
    <message>
        <source>Browsing tree error</source>
        <translation>Fehler des Navigationsbaums</translation>
    </message>
    <message>
        <source>Selected browsing tree no longer exists.
Selected default browsing tree.</source>
        <translation>Den ausgewählten Navigationsbaum gibt es nicht mehr.
Der Standardbaum wurde ausgewählt.</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Adding Files</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Duplicate Management For Adding Files</source>
        <translation>Duplikate beim Hinzufügen</translation>
    </message>
    <message>
        <source>Enable duplicate management</source>
        <translation>Duplikate verwalten</translation>
    </message>
    <message>
        <source>List files which were not added because they were duplicates</source>
        <translation>Dateien auflisten, die als Duplikate nicht hinzugefügt wurden</translation>
    </message>
    <message>
        <source>Check for and present file name duplicates</source>
        <translation>Nach Dateien gleichen Namens suchen und sie anzeigen</translation>
    </message>
    <message>
        <source>Automatic Tag Creation</source>
        <translation>Automatische Tags</translation>
    </message>
    <message>
        <source>Enable auto-tag-creation from folders</source>
        <translation>Tags aus Ordnern von selbst anlegen</translation>
    </message>
    <message>
        <source>Automatically create Browsing Nodes</source>
        <translation>Navigationsknoten von selbst anlegen</translation>
    </message>
    <message>
        <source>Limit auto-tagging to folder level:</source>
        <translation>Automatische Tags bis zur Ordnerebene:</translation>
    </message>
    <message>
        <source>External Files</source>
        <translation>Externe Dateien</translation>
    </message>
    <message>
        <source>Advise when external file details are updated</source>
        <translation>Melden, wenn Angaben zu externen Dateien aktualisiert wurden</translation>
    </message>
    <message>
        <source>Browsing</source>
        <translation>Navigation</translation>
    </message>
    <message>
        <source>Browsing Tree</source>
        <translation>Navigationsbaum</translation>
    </message>
    <message>
        <source>Alphabetical Order</source>
        <translation>Alphabetische Reihenfolge</translation>
    </message>
    <message>
        <source>Manual Order</source>
        <translation>Eigene Reihenfolge</translation>
    </message>
    <message>
        <source>Ask for node to be added above or below drop point</source>
        <translation>Fragen, ob der Knoten über oder unter der Ablagestelle eingefügt wird</translation>
    </message>
    <message>
        <source>Note: Nodes can be inserted above the level of the drop-point node by holding the Alt key when dragging.</source>
        <translation>Hinweis: Mit gedrückter Alt-Taste werden Knoten beim Ziehen über der Ebene der Ablagestelle eingefügt.</translation>
    </message>
    <message>
        <source>Auto Linking</source>
        <translation>Automatische Verknüpfung</translation>
    </message>
    <message>
        <source>Auto link files continuously</source>
        <translation>Dateien fortlaufend verknüpfen</translation>
    </message>
    <message>
        <source>Auto link new files only when the corresponding browsing node is selected</source>
        <translation>Neue Dateien nur verknüpfen, wenn der zugehörige Knoten ausgewählt wird</translation>
    </message>
    <message>
        <source>Check for new files in all auto link folders each time Vorna is launched.</source>
        <translation>Bei jedem Start von Vorna in allen verknüpften Ordnern nach neuen Dateien suchen.</translation>
    </message>
    <message>
        <source>Auto link files in the background and do not display any messages.</source>
        <translation>Dateien im Hintergrund verknüpfen und keine Meldungen zeigen.</translation>
    </message>
    <message>
        <source>Misc</source>
        <translation>Verschiedenes</translation>
    </message>
    <message>
        <source>Number of thumbnails to cache:</source>
        <translation>Miniaturbilder im Zwischenspeicher:</translation>
    </message>
    <message>
        <source>Recent Files Timeout:</source>
        <translation>Dateien gelten als neu für:</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>Image previewer</source>
        <translation>Bildvorschau</translation>
    </message>
    <message>
        <source>Auto-save rotated images</source>
        <translation>Gedrehte Bilder von selbst speichern</translation>
    </message>
    <message>
        <source>Keep image window on top</source>
        <translation>Bildfenster im Vordergrund halten</translation>
    </message>
    <message>
        <source>Slideshow increment time:</source>
        <translation>Diashow, Zeit je Bild:</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Aktualisierungen</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <translation>Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Download updates automatically</source>
        <translation>Aktualisierungen von selbst herunterladen</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Prüfen</translation>
    </message>
    <message>
        <source>The preferences could not be stored.</source>
        <translation>Die Einstellungen konnten nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>The update server is being asked.</source>
        <translation>Der Aktualisierungsserver wird gefragt.</translation>
    </message>
    <message>
        <source>Checked Connection</source>
        <translation>Verbindung geprüft</translation>
    </message>
    <message>
        <source>Update check succeeded.</source>
        <translation>Die Suche nach Aktualisierungen war erfolgreich.</translation>
    </message>
    <message>
        <source>The update server could not be reached.</source>
        <translation>Der Aktualisierungsserver ist nicht zu erreichen.</translation>
    </message>
</context>
<context>
    <name>PreviewBox</name>
    <message>
        <source>%1 - %2 of %3</source>
        <translation>%1 – %2 von %3</translation>
    </message>
    <message>
        <source>The loading of this picture was canceled.</source>
        <translation>Das Laden dieses Bildes wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The database is busy. The picture comes as soon as it is free.</source>
        <translation>Die Datenbank ist beschäftigt. Das Bild kommt, sobald sie frei ist.</translation>
    </message>
    <message>
        <source>This picture cannot be shown.</source>
        <translation>Dieses Bild kann nicht gezeigt werden.</translation>
    </message>
    <message>
        <source>File No Longer Present</source>
        <translation>Datei nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>This image could not be opened because the file no longer exists in its original path. It may have been moved, renamed or deleted.</source>
        <translation>Dieses Bild konnte nicht geöffnet werden, weil die Datei nicht mehr an ihrem ursprünglichen Ort ist. Sie wurde vielleicht verschoben, umbenannt oder gelöscht.</translation>
    </message>
    <message>
        <source>Error previewing image</source>
        <translation>Fehler bei der Bildvorschau</translation>
    </message>
    <message>
        <source>An error has occurred while retrieving this externally stored image.</source>
        <translation>Beim Lesen dieses extern gespeicherten Bildes ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An error has occurred while retrieving this image.</source>
        <translation>Beim Lesen dieses Bildes ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Error saving image</source>
        <translation>Fehler beim Speichern des Bildes</translation>
    </message>
    <message>
        <source>The turned picture could not be saved.</source>
        <translation>Das gedrehte Bild konnte nicht gespeichert werden.</translation>
    </message>
</context>
<context>
    <name>ProgressDialog</name>
    <message>
        <source>File Location</source>
        <translation>Dateien suchen</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Locating files...</source>
        <translation>Dateien werden gesucht&#xa0;…</translation>
    </message>
</context>
<context>
    <name>PropertiesDialog</name>
    <message>
        <source>File Properties</source>
        <translation>Dateieigenschaften</translation>
    </message>
    <message>
        <source>Name: %1
Description: %2
Added: %3
Modified: %4
Size: %5
Absolute path: %6
Relative path: %7
</source>
        <translation>Name: %1
Beschreibung: %2
Hinzugefügt: %3
Geändert: %4
Größe: %5
Absoluter Pfad: %6
Relativer Pfad: %7
</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 Byte</translation>
    </message>
    <message numerus="yes">
        <source>%1 bytes</source>
        <translation>
            <numerusform>%1 Byte</numerusform>
            <numerusform>%1 Bytes</numerusform>
        </translation>
    </message>
    <message>
        <source>internal</source>
        <translation>intern</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Opening database...</source>
        <translation>Datenbank wird geöffnet&#xa0;…</translation>
    </message>
</context>
<context>
    <name>RelationTreeViewDock</name>
    <message>
        <source>Tag Relationships</source>
        <translation>Tag-Beziehungen</translation>
    </message>
</context>
<context>
    <name>RelationTyping</name>
    <message>
        <source>Add tags:</source>
        <translation>Tags aufnehmen:</translation>
    </message>
    <message>
        <source>Add Tag...</source>
        <translation>Tag aufnehmen …</translation>
    </message>
    <message>
        <source>Add Tag Below...</source>
        <translation>Tag darunter aufnehmen …</translation>
    </message>
    <message>
        <source>Below %1:</source>
        <translation>Unter %1:</translation>
    </message>
</context>
<context>
    <name>RelationshipImporter</name>
    <message>
        <source>Tag relationships that are none: %1</source>
        <translation>Tag-Beziehungen, die keine sind: %1</translation>
    </message>
    <message>
        <source>Tag relationships by which a tag would stand below itself: %1</source>
        <translation>Tag-Beziehungen, durch die ein Tag unter sich selbst stünde: %1</translation>
    </message>
    <message>
        <source>Tag relationships beyond the first million: %1</source>
        <translation>Tag-Beziehungen über die erste Million hinaus: %1</translation>
    </message>
</context>
<context>
    <name>ReloadProgress</name>
    <message>
        <source>Reading the database again... %1 %</source>
        <translation>Datenbank wird neu gelesen&#xa0;… %1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>RenamedFiles</name>
    <message>
        <source>There is already a file with this name.</source>
        <translation>Es gibt schon eine Datei mit diesem Namen.</translation>
    </message>
    <message>
        <source>The file could not be renamed.</source>
        <translation>Die Datei konnte nicht umbenannt werden.</translation>
    </message>
</context>
<context>
    <name>SQLiteDBManager</name>
    <message>
        <source>The database file does not exist.</source>
        <translation>Die Datenbankdatei gibt es nicht.</translation>
    </message>
    <message>
        <source>Database Permissions</source>
        <translation>Rechte der Datenbank</translation>
    </message>
    <message>
        <source>This database is not readable by this user.</source>
        <translation>Dieser Benutzer darf diese Datenbank nicht lesen.</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
</context>
<context>
    <name>SQLiteImporter</name>
    <message>
        <source>Importing files...</source>
        <translation>Dateien werden importiert&#xa0;…</translation>
    </message>
    <message>
        <source>Nothing was imported.</source>
        <translation>Nichts wurde importiert.</translation>
    </message>
    <message>
        <source>It has no tables of these names, or others: %1.</source>
        <translation>Ihr fehlen Tabellen dieser Namen, oder sie sehen anders aus: %1.</translation>
    </message>
    <message>
        <source>Comparing files...</source>
        <translation>Dateien werden verglichen&#xa0;…</translation>
    </message>
    <message>
        <source>Importing tags...</source>
        <translation>Tags werden importiert&#xa0;…</translation>
    </message>
    <message>
        <source>Merging descriptions...</source>
        <translation>Beschreibungen werden zusammengeführt&#xa0;…</translation>
    </message>
    <message>
        <source>Linking tags...</source>
        <translation>Tags werden zugeordnet&#xa0;…</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not imported.

%2</source>
        <translation>„%1“ wurde nicht importiert.

%2</translation>
    </message>
    <message>
        <source>Error importing shell database </source>
        <translation>Fehler beim Importieren der Hülle </translation>
    </message>
    <message>
        <source>Error importing files </source>
        <translation>Fehler beim Importieren der Dateien </translation>
    </message>
    <message>
        <source>An unknown error occurred while importing shell database</source>
        <translation>Beim Importieren der Hülle ist ein unbekannter Fehler aufgetreten</translation>
    </message>
    <message>
        <source>An unknown error occurred while adding files</source>
        <translation>Beim Hinzufügen von Dateien ist ein unbekannter Fehler aufgetreten</translation>
    </message>
    <message>
        <source>A part of it, or of the open database, cannot be read, as the file is damaged.</source>
        <translation>Ein Teil von ihr oder von der geöffneten Datenbank kann nicht gelesen werden, da die Datei beschädigt ist.</translation>
    </message>
    <message>
        <source>There was an error when opening a connection to the database for the purpose of adding files.</source>
        <translation>Beim Öffnen einer Verbindung zur Datenbank, aus der Dateien hinzugefügt werden sollten, ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Error opening connection to database</source>
        <translation>Fehler beim Verbinden mit der Datenbank</translation>
    </message>
</context>
<context>
    <name>ServerConnections</name>
    <message>
        <source>Failed to Connect to Database</source>
        <translation>Keine Verbindung zur Datenbank</translation>
    </message>
    <message>
        <source>Connection could not be made to the specified remote database.</source>
        <translation>Mit der angegebenen entfernten Datenbank konnte keine Verbindung hergestellt werden.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation>Verbindung mit %1 wird hergestellt&#xa0;…</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
</context>
<context>
    <name>ShellFilesModel</name>
    <message numerus="yes">
        <source>%1, %2 bytes</source>
        <translation>
            <numerusform>%1, %2 Byte</numerusform>
            <numerusform>%1, %2 Bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ShellImportNotification</name>
    <message>
        <source>Shell Import Notification</source>
        <translation>Import einer Hülle</translation>
    </message>
    <message>
        <source>The metadata for the following files was not imported since a matching file was not found in the destination database.</source>
        <translation>Die Metadaten der folgenden Dateien wurden nicht importiert, da in der Zieldatenbank keine passende Datei gefunden wurde.</translation>
    </message>
</context>
<context>
    <name>SourceFiles</name>
    <message>
        <source>Files with values that are no numbers: %1</source>
        <translation>Dateien mit Werten, die keine Zahlen sind: %1</translation>
    </message>
</context>
<context>
    <name>SpecialNodes</name>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>All files with tags</source>
        <translation>Alle Dateien mit Tags</translation>
    </message>
    <message>
        <source>All files without tags</source>
        <translation>Alle Dateien ohne Tags</translation>
    </message>
    <message>
        <source>All files with their contents in the database.</source>
        <translation>Alle Dateien, deren Inhalt in der Datenbank liegt.</translation>
    </message>
    <message>
        <source>All files residing in paths external to the database.</source>
        <translation>Alle Dateien, die außerhalb der Datenbank liegen.</translation>
    </message>
    <message>
        <source>All Hyperlinks</source>
        <translation>Alle Hyperlinks</translation>
    </message>
    <message>
        <source>Recently added files</source>
        <translation>Zuletzt hinzugefügte Dateien</translation>
    </message>
    <message>
        <source>All Internal Files</source>
        <translation>Alle internen Dateien</translation>
    </message>
    <message>
        <source>All External Files</source>
        <translation>Alle externen Dateien</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>1 tag</source>
        <translation>1 Tag</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags</source>
        <translation>
            <numerusform>%Ln Tag</numerusform>
            <numerusform>%Ln Tags</numerusform>
        </translation>
    </message>
    <message>
        <source>1 group</source>
        <translation>1 Gruppe</translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups</source>
        <translation>
            <numerusform>%Ln Gruppe</numerusform>
            <numerusform>%Ln Gruppen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 node</source>
        <translation>1 Knoten</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes</source>
        <translation>
            <numerusform>%Ln Knoten</numerusform>
            <numerusform>%Ln Knoten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tag relationship</source>
        <translation>1 Tag-Beziehung</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships</source>
        <translation>
            <numerusform>%Ln Tag-Beziehung</numerusform>
            <numerusform>%Ln Tag-Beziehungen</numerusform>
        </translation>
    </message>
    <message>
        <source>1 browsing tree</source>
        <translation>1 Navigationsbaum</translation>
    </message>
    <message numerus="yes">
        <source>%Ln browsing trees</source>
        <translation>
            <numerusform>%Ln Navigationsbaum</numerusform>
            <numerusform>%Ln Navigationsbäume</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 Datei</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 changed by others</source>
        <translation>Von anderen geändert: %1</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between the parts of a list</comment>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>TBtreeView</name>
    <message>
        <source>Browsing Tree</source>
        <translation>Navigationsbaum</translation>
    </message>
    <message>
        <source>Create new node</source>
        <translation>Neuer Knoten</translation>
    </message>
    <message>
        <source>Add above</source>
        <translation>Darüber einfügen</translation>
    </message>
    <message>
        <source>Add below</source>
        <translation>Darunter einfügen</translation>
    </message>
    <message>
        <source>Do you really want to delete a non-leaf node from this tree?</source>
        <translation>Möchten Sie wirklich einen Knoten aus diesem Baum löschen, unter dem andere stehen?</translation>
    </message>
    <message>
        <source>Do you really want to delete non-leaf nodes from this tree?</source>
        <translation>Möchten Sie wirklich Knoten aus diesem Baum löschen, unter denen andere stehen?</translation>
    </message>
</context>
<context>
    <name>TRview</name>
    <message>
        <source>Tag Relationships</source>
        <translation>Tag-Beziehungen</translation>
    </message>
    <message>
        <source>Error creating tag relationship</source>
        <translation>Fehler beim Anlegen der Tag-Beziehung</translation>
    </message>
    <message>
        <source>This is an illegal tag relationship.</source>
        <translation>Das ist keine zulässige Tag-Beziehung.</translation>
    </message>
    <message>
        <source>Do you really want to delete a non-leaf node from this tree?</source>
        <translation>Möchten Sie wirklich einen Knoten aus diesem Baum löschen, unter dem andere stehen?</translation>
    </message>
    <message>
        <source>Tag Relationship Operations</source>
        <translation>Befehle für Tag-Beziehungen</translation>
    </message>
    <message>
        <source>Delete Relationship Subtree</source>
        <translation>Unterbaum der Beziehung löschen</translation>
    </message>
    <message>
        <source>Drag tags here. A tag then stands for all tags below it.</source>
        <translation>Ziehen Sie Tags hierher. Ein Tag steht dann für alle Tags unter ihm.</translation>
    </message>
</context>
<context>
    <name>TagDockActions</name>
    <message>
        <source>Assign Tag Groups</source>
        <translation>Tag-Gruppen zuordnen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Export Tags</source>
        <translation>Tags exportieren</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>Add Tag Group</source>
        <translation>Tag-Gruppe hinzufügen</translation>
    </message>
    <message>
        <source>Delete Current Group</source>
        <translation>Aktuelle Gruppe löschen</translation>
    </message>
    <message>
        <source>New Tag</source>
        <translation>Neues Tag</translation>
    </message>
    <message>
        <source>All of the Tags</source>
        <translation>Alle diese Tags</translation>
    </message>
    <message>
        <source>Show files having all of the selected tags (Tab)</source>
        <translation>Dateien anzeigen, die alle ausgewählten Tags haben (Tab)</translation>
    </message>
    <message>
        <source>Any of the Tags</source>
        <translation>Eines dieser Tags</translation>
    </message>
    <message>
        <source>Show files having at least one of the selected tags (Ctrl+=)</source>
        <translation>Dateien anzeigen, die mindestens eines der ausgewählten Tags haben (Strg+=)</translation>
    </message>
    <message>
        <source>Merge Tags...</source>
        <translation>Tags zusammenführen …</translation>
    </message>
</context>
<context>
    <name>TagDockCommands</name>
    <message>
        <source>New Tag</source>
        <translation>Neues Tag</translation>
    </message>
    <message>
        <source>Tag name:</source>
        <translation>Name des Tags:</translation>
    </message>
    <message>
        <source>Tags In Use</source>
        <translation>Benutzte Tags</translation>
    </message>
    <message>
        <source>Some of the tags chosen for deletion are in use by being linked to files, nodes or tag relationships. Deletion of these tags will result in the deletion of all of these links and all relevant nodes and tag relationships.
Would you like to delete the tags that are in use?</source>
        <translation>Einige der zum Löschen ausgewählten Tags werden benutzt: Sie sind Dateien, Knoten oder Tag-Beziehungen zugeordnet. Werden sie gelöscht, gehen auch alle diese Zuordnungen und alle zugehörigen Knoten und Tag-Beziehungen verloren.
Möchten Sie die benutzten Tags löschen?</translation>
    </message>
</context>
<context>
    <name>TagExportDialog</name>
    <message>
        <source>Export Tags</source>
        <translation>Tags exportieren</translation>
    </message>
    <message>
        <source>The selected tags are exported with the files that bear them.</source>
        <translation>Die ausgewählten Tags werden mit den Dateien exportiert, die sie tragen.</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Datenbank</translation>
    </message>
    <message>
        <source>Shell, a database without the contents of files</source>
        <translation>Hülle, eine Datenbank ohne die Inhalte der Dateien</translation>
    </message>
    <message>
        <source>CSV File, a table of the files</source>
        <translation>CSV-Datei, eine Tabelle der Dateien</translation>
    </message>
</context>
<context>
    <name>TagGroupBar</name>
    <message>
        <source>Tag Groups</source>
        <translation>Tag-Gruppen</translation>
    </message>
    <message>
        <source>All Tags</source>
        <translation>Alle Tags</translation>
    </message>
    <message>
        <source>All tags of the database</source>
        <translation>Alle Tags der Datenbank</translation>
    </message>
    <message>
        <source>D-Tags</source>
        <translation>D-Tags</translation>
    </message>
    <message>
        <source>The tags that are on some, but not all, of the files shown</source>
        <translation>Die Tags, die einige, aber nicht alle der gezeigten Dateien haben</translation>
    </message>
</context>
<context>
    <name>TagGroupForm</name>
    <message>
        <source>Assign Tag Groups</source>
        <translation>Tag-Gruppen zuordnen</translation>
    </message>
    <message>
        <source>Check the groups that the selected tag belongs to.</source>
        <translation>Kreuzen Sie die Gruppen an, zu denen das ausgewählte Tag gehört.</translation>
    </message>
    <message>
        <source>Check the groups that the selected tags belong to. Half checked are those that hold some of them.</source>
        <translation>Kreuzen Sie die Gruppen an, zu denen die ausgewählten Tags gehören. Halb angekreuzt sind die, die nur einige davon enthalten.</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Tag-Gruppen</translation>
    </message>
    <message>
        <source>No tag groups yet</source>
        <translation>Noch keine Tag-Gruppen</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
</context>
<context>
    <name>TagGroupModel</name>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Reiter</translation>
    </message>
</context>
<context>
    <name>TagGroupingDialog</name>
    <message>
        <source>Several in &amp;succession</source>
        <translation>Mehrere hinter&amp;einander</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Edit Tag Groups</source>
        <translation>Tag-Gruppen bearbeiten</translation>
    </message>
    <message>
        <source>Groups arrange tags; a checked group is a tab below the table of tags.</source>
        <translation>Gruppen ordnen Tags; eine angekreuzte Gruppe ist ein Reiter unter der Tag-Tabelle.</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Tag-Gruppen</translation>
    </message>
    <message>
        <source>No tag groups yet</source>
        <translation>Noch keine Tag-Gruppen</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>Make a new tag group</source>
        <translation>Eine neue Tag-Gruppe anlegen</translation>
    </message>
    <message>
        <source>After each new group ask for the next one, until that is cancelled</source>
        <translation>Nach jeder neuen Gruppe nach der nächsten fragen, bis abgebrochen wird</translation>
    </message>
    <message>
        <source>Delete the selected groups; their tags stay (%1)</source>
        <translation>Die ausgewählten Gruppen löschen; ihre Tags bleiben (%1)</translation>
    </message>
</context>
<context>
    <name>TagImporter</name>
    <message>
        <source>Tags without a name, with a date that is none or with texts that are too long: %1</source>
        <translation>Tags ohne Namen, mit einem ungültigen Datum oder mit zu langen Texten: %1</translation>
    </message>
</context>
<context>
    <name>TagRemovalDialog</name>
    <message>
        <source>File Tags</source>
        <translation>Tags der Dateien</translation>
    </message>
    <message>
        <source> Tags</source>
        <translation> Tags</translation>
    </message>
</context>
<context>
    <name>TagsController</name>
    <message>
        <source>Tag Missing</source>
        <translation>Tag fehlt</translation>
    </message>
    <message>
        <source>One of the tags has been removed meanwhile.</source>
        <translation>Einer der Tags ist inzwischen entfernt worden.</translation>
    </message>
    <message>
        <source>Node Missing</source>
        <translation>Knoten fehlt</translation>
    </message>
    <message>
        <source>The node has been removed meanwhile.</source>
        <translation>Der Knoten ist inzwischen entfernt worden.</translation>
    </message>
    <message>
        <source>Tag Relationship Missing</source>
        <translation>Tag-Beziehung fehlt</translation>
    </message>
    <message>
        <source>The tag relationship has been removed meanwhile.</source>
        <translation>Die Tag-Beziehung ist inzwischen entfernt worden.</translation>
    </message>
    <message>
        <source>Error creating tag relationship</source>
        <translation>Fehler beim Anlegen der Tag-Beziehung</translation>
    </message>
    <message>
        <source>This is an illegal tag relationship.</source>
        <translation>Diese Tag-Beziehung ist unzulässig.</translation>
    </message>
</context>
<context>
    <name>TagsTableDock</name>
    <message>
        <source>Tags</source>
        <translation>Tags</translation>
    </message>
    <message>
        <source>No tag matches the filter.</source>
        <translation>Kein Tag passt zum Filter.</translation>
    </message>
    <message>
        <source>Open a tag or the node of one: the tags that some, but not all, of its files have stand here.</source>
        <translation>Öffnen Sie ein Tag oder den Knoten eines Tags: Hier stehen dann die Tags, die einige, aber nicht alle seiner Dateien haben.</translation>
    </message>
    <message>
        <source>No tags yet.
Make one with %1.</source>
        <translation>Noch keine Tags.
Legen Sie mit %1 eines an.</translation>
    </message>
    <message>
        <source>No tags in this group.
Drop tags on its tab.</source>
        <translation>Keine Tags in dieser Gruppe.
Legen Sie Tags auf ihrem Reiter ab.</translation>
    </message>
    <message>
        <source>Hide all columns except Name</source>
        <translation>Alle Spalten außer „Name“ ausblenden</translation>
    </message>
    <message>
        <source>Tag Operations</source>
        <translation>Tag-Befehle</translation>
    </message>
</context>
<context>
    <name>TagsTableModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>Erstellungsdatum</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
</context>
<context>
    <name>TakenNames</name>
    <message>
        <source>New: %1</source>
        <translation>Neu: %1</translation>
    </message>
</context>
<context>
    <name>ThumbnailSize</name>
    <message>
        <source>Size of the thumbnails</source>
        <translation>Größe der Miniaturbilder</translation>
    </message>
</context>
<context>
    <name>TitleWidget</name>
    <message>
        <source>Tag requirements</source>
        <translation>Gesuchte Tags</translation>
    </message>
    <message>
        <source>No tag or browsing node open</source>
        <translation>Kein Tag oder Navigationsknoten geöffnet</translation>
    </message>
    <message>
        <source>Tag Requirements:</source>
        <translation>Gesuchte Tags:</translation>
    </message>
    <message>
        <source>and</source>
        <extracomment>between the names of two tags</extracomment>
        <translation>und</translation>
    </message>
    <message>
        <source>or</source>
        <extracomment>between the names of two tags</extracomment>
        <translation>oder</translation>
    </message>
    <message>
        <source>, &lt;i&gt;search:&lt;/i&gt; &quot;%1&quot;</source>
        <translation>, &lt;i&gt;Suche:&lt;/i&gt; „%1“</translation>
    </message>
    <message>
        <source>&lt;i&gt;without:&lt;/i&gt; %1</source>
        <translation>&lt;i&gt;ohne:&lt;/i&gt; %1</translation>
    </message>
    <message>
        <source>Drop tags here to show the files that have them; with Ctrl, those of the present ones</source>
        <translation>Tags hier ablegen, um die Dateien zu sehen, die sie haben; mit Strg unter den jetzigen</translation>
    </message>
    <message>
        <source>&amp;Require</source>
        <translation>&amp;Verlangen</translation>
    </message>
    <message>
        <source>&amp;Exclude</source>
        <translation>&amp;Ausschließen</translation>
    </message>
    <message>
        <source>&amp;Open Alone</source>
        <translation>A&amp;llein öffnen</translation>
    </message>
    <message>
        <source>&amp;Take Off</source>
        <translation>&amp;Wegnehmen</translation>
    </message>
</context>
<context>
    <name>UndoActions</name>
    <message>
        <source>Undo %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
</context>
<context>
    <name>UndoHistory</name>
    <message>
        <source>Undone: %1</source>
        <translation>Rückgängig gemacht: %1</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>Wiederholt: %1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 Datei</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln Datei</numerusform>
            <numerusform>%Ln Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tag</source>
        <translation>1 Tag</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags</source>
        <translation>
            <numerusform>%Ln Tag</numerusform>
            <numerusform>%Ln Tags</numerusform>
        </translation>
    </message>
    <message>
        <source>1 node</source>
        <translation>1 Knoten</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes</source>
        <translation>
            <numerusform>%Ln Knoten</numerusform>
            <numerusform>%Ln Knoten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 link</source>
        <translation>1 Verknüpfung</translation>
    </message>
    <message numerus="yes">
        <source>%Ln links</source>
        <translation>
            <numerusform>%Ln Verknüpfung</numerusform>
            <numerusform>%Ln Verknüpfungen</numerusform>
        </translation>
    </message>
    <message>
        <source>, </source>
        <comment>between the parts of a list</comment>
        <translation>, </translation>
    </message>
    <message>
        <source>The rest is done. These have been changed or removed since, and were left as they are: %1.</source>
        <translation>Das Übrige ist getan. Dies ist seither geändert oder entfernt worden und blieb, wie es ist: %1.</translation>
    </message>
</context>
<context>
    <name>UpdateBar</name>
    <message>
        <source>Download New Version</source>
        <translation>Neue Version herunterladen</translation>
    </message>
    <message>
        <source>Install New Version</source>
        <translation>Neue Version installieren</translation>
    </message>
    <message>
        <source>Cancel Download</source>
        <translation>Herunterladen abbrechen</translation>
    </message>
    <message>
        <source>Downloading new version: </source>
        <translation>Neue Version wird heruntergeladen: </translation>
    </message>
    <message>
        <source>Error Downloading Update</source>
        <translation>Fehler beim Herunterladen</translation>
    </message>
    <message>
        <source>An error occurred while downloading the new version.</source>
        <translation>Beim Herunterladen der neuen Version ist ein Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisierung</translation>
    </message>
    <message>
        <source>This program must close in order to open the installer of a new version.</source>
        <translation>Das Programm muss sich beenden, um das Installationsprogramm der neuen Version zu öffnen.</translation>
    </message>
    <message>
        <source>The installer of the new version could not be opened.</source>
        <translation>Das Installationsprogramm der neuen Version konnte nicht geöffnet werden.</translation>
    </message>
</context>
<context>
    <name>WindowCommands</name>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>New Local Database</source>
        <translation>Neue lokale Datenbank</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Datenbank</translation>
    </message>
    <message>
        <source>Shell</source>
        <translation>Hülle</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Database Info</source>
        <translation>Über die Datenbank</translation>
    </message>
    <message>
        <source>Show All Docks</source>
        <translation>Alle Andockfenster anzeigen</translation>
    </message>
    <message>
        <source>Select Browsing Tree</source>
        <translation>Navigationsbaum wählen</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Tag-Gruppen</translation>
    </message>
    <message>
        <source>Browsing Tree List</source>
        <translation>Liste der Navigationsbäume</translation>
    </message>
    <message>
        <source>Remake thumbnails</source>
        <translation>Miniaturbilder neu erstellen</translation>
    </message>
    <message>
        <source>Quick Start Guide</source>
        <translation>Schnelleinstieg</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Handbuch</translation>
    </message>
    <message>
        <source>Nameplate</source>
        <translation>Über Vorna</translation>
    </message>
    <message>
        <source>Send feedback</source>
        <translation>Rückmeldung senden</translation>
    </message>
    <message>
        <source>Send feedback to %1</source>
        <translation>Rückmeldung an %1 senden</translation>
    </message>
    <message>
        <source>Ext</source>
        <extracomment>a short &quot;external&quot;, on a button of the tool bar</extracomment>
        <translation>Ext</translation>
    </message>
    <message>
        <source>Link to files (keep external)</source>
        <translation>Mit Dateien verknüpfen (extern lassen)</translation>
    </message>
    <message>
        <source>Int</source>
        <extracomment>a short &quot;internal&quot;, on a button of the tool bar</extracomment>
        <translation>Int</translation>
    </message>
    <message>
        <source>Copy files into database (make internal)</source>
        <translation>Dateien in die Datenbank kopieren (intern)</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
</context>
<context>
    <name>WindowParts</name>
    <message>
        <source>File Counts</source>
        <translation>Anzahl der Dateien</translation>
    </message>
    <message>
        <source>Show how many files each tag and node has</source>
        <translation>Zeigt, wie viele Dateien jeder Tag und jeder Knoten hat</translation>
    </message>
</context>
</TS>
