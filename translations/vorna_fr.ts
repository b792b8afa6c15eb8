<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>AbstractController</name>
    <message>
        <source>Read-only Database</source>
        <translation>Base de données en lecture seule</translation>
    </message>
    <message>
        <source>This database is read-only.</source>
        <translation>Cette base de données est en lecture seule.</translation>
    </message>
</context>
<context>
    <name>AddHyperlinkDialog</name>
    <message>
        <source>Add Hyperlink</source>
        <translation>Ajouter un hyperlien</translation>
    </message>
    <message>
        <source>&amp;Hyperlink:</source>
        <translation>&amp;Hyperlien&#xa0;:</translation>
    </message>
    <message>
        <source>https://</source>
        <translation>https://</translation>
    </message>
    <message>
        <source>&amp;Description:</source>
        <translation>&amp;Description&#xa0;:</translation>
    </message>
    <message>
        <source>The address of a page or a mailbox, kept like a file.</source>
        <translation>L’adresse d’une page ou d’une boîte aux lettres, conservée comme un fichier.</translation>
    </message>
    <message>
        <source>Hyperlinks is file on the local file system</source>
        <translation>L’hyperlien est un fichier du système de fichiers local</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
</context>
<context>
    <name>AutoLinkDialog</name>
    <message>
        <source>Auto Linking</source>
        <translation>Liaison automatique</translation>
    </message>
    <message>
        <source>Absolute path: %1
Relative path: %2</source>
        <translation>Chemin absolu&#xa0;: %1
Chemin relatif&#xa0;: %2</translation>
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
        <translation>Fichiers laissés de côté</translation>
    </message>
    <message>
        <source>1 file has a name that cannot be read:
%1</source>
        <translation>1 fichier a un nom illisible&#xa0;:
%1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files have names that cannot be read.</source>
        <translation>
            <numerusform>%Ln fichier a un nom illisible.</numerusform>
            <numerusform>%Ln fichiers ont des noms illisibles.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AutoLinks</name>
    <message>
        <source>Can&apos;t link to folder</source>
        <translation>Impossible de lier le dossier</translation>
    </message>
    <message>
        <source>The folder does not exist.</source>
        <translation>Le dossier n’existe pas.</translation>
    </message>
    <message>
        <source>Folder contains current database.</source>
        <translation>Le dossier contient la base de données ouverte.</translation>
    </message>
    <message>
        <source>Error Creating Link</source>
        <translation>Erreur lors de la création du lien</translation>
    </message>
    <message>
        <source>Node already has link to this folder.</source>
        <translation>Le nœud est déjà lié à ce dossier.</translation>
    </message>
    <message>
        <source>The system does not watch 1 linked folder, as it has no watches left (fs.inotify.max_user_watches). The folder is looked at every %1 seconds instead.</source>
        <translation>Le système ne surveille pas 1 dossier lié, car il n’a plus de surveillance libre (fs.inotify.max_user_watches). Le dossier est donc examiné toutes les %1 secondes.</translation>
    </message>
    <message numerus="yes">
        <source>The system does not watch %Ln linked folders, as it has no watches left (fs.inotify.max_user_watches). They are looked at every %1 seconds instead.</source>
        <translation>
            <numerusform>Le système ne surveille pas %Ln dossier lié, car il n’a plus de surveillance libre (fs.inotify.max_user_watches). Il est donc examiné toutes les %1 secondes.</numerusform>
            <numerusform>Le système ne surveille pas %Ln dossiers liés, car il n’a plus de surveillance libre (fs.inotify.max_user_watches). Ils sont donc examinés toutes les %1 secondes.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>BrowsingTreeDialog</name>
    <message>
        <source>&amp;Create new Browsing Tree</source>
        <translation>&amp;Nouvel arbre de navigation</translation>
    </message>
    <message>
        <source>&amp;Delete Browsing Tree</source>
        <translation>&amp;Supprimer l’arbre de navigation</translation>
    </message>
    <message>
        <source>Browsing Trees</source>
        <translation>Arbres de navigation</translation>
    </message>
    <message>
        <source>All who share this database see the same trees. Which one is shown here is your own choice.</source>
        <translation>Tous ceux qui partagent cette base de données voient les mêmes arbres. Celui qui est affiché ici est votre propre choix.</translation>
    </message>
    <message>
        <source>Make an empty tree</source>
        <translation>Créer un arbre vide</translation>
    </message>
    <message>
        <source>Delete the tree of the current row for everybody; tags and files stay (%1)</source>
        <translation>Supprimer pour tous l’arbre de la ligne courante&#x202f;; les étiquettes et les fichiers restent (%1)</translation>
    </message>
    <message>
        <source>Create new Browsing Tree</source>
        <translation>Nouvel arbre de navigation</translation>
    </message>
    <message>
        <source>Name of new browsing tree:</source>
        <translation>Nom du nouvel arbre de navigation&#xa0;:</translation>
    </message>
    <message>
        <source>Delete browsing tree</source>
        <translation>Supprimer l’arbre de navigation</translation>
    </message>
    <message>
        <source>Default browsing tree can not be deleted.</source>
        <translation>L’arbre de navigation par défaut ne peut pas être supprimé.</translation>
    </message>
    <message>
        <source>Selected browsing tree can not be deleted.</source>
        <translation>L’arbre de navigation choisi ne peut pas être supprimé.</translation>
    </message>
    <message>
        <source>The following Browsing Tree will be deleted: %1.</source>
        <translation>L’arbre de navigation suivant sera supprimé&#xa0;: %1.</translation>
    </message>
</context>
<context>
    <name>BrowsingTreeTableModel</name>
    <message>
        <source>Show %1</source>
        <translation>Afficher %1</translation>
    </message>
    <message>
        <source>There is already a browsing tree with this name.</source>
        <translation>Il y a déjà un arbre de navigation de ce nom.</translation>
    </message>
    <message>
        <source>Selected browsing tree no longer exists.</source>
        <translation>L’arbre de navigation choisi n’existe plus.</translation>
    </message>
    <message>
        <source>Browsing tree name</source>
        <translation>Nom de l’arbre de navigation</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Choix</translation>
    </message>
    <message>
        <source>Previous browsing tree does not exists anymore. 
Selected default browsing tree.</source>
        <translation>L’arbre de navigation précédent n’existe plus. 
L’arbre par défaut a été choisi.</translation>
    </message>
    <message>
        <source>Browsing tree error</source>
        <translation>Erreur d’arbre de navigation</translation>
    </message>
</context>
<context>
    <name>BrowsingTreeTagsDialog</name>
    <message>
        <source>Browsing Tree Tags</source>
        <translation>Étiquettes de l’arbre de navigation</translation>
    </message>
</context>
<context>
    <name>BrowsingTreeViewDock</name>
    <message>
        <source>Browsing Tree</source>
        <translation>Arbre de navigation</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Delete with subtree</source>
        <translation>Supprimer avec le sous-arbre</translation>
    </message>
    <message>
        <source>Tag Relationships Enabled</source>
        <translation>Relations d’étiquettes activées</translation>
    </message>
    <message>
        <source>Tag Node Inverted</source>
        <translation>Nœud inversé</translation>
    </message>
    <message>
        <source>Auto Link To Folder</source>
        <translation>Lier automatiquement à un dossier</translation>
    </message>
    <message>
        <source>View Path</source>
        <translation>Afficher le chemin</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Browsing Tree: %1</source>
        <translation>Arbre de navigation&#xa0;: %1</translation>
    </message>
    <message>
        <source>Select Directoty</source>
        <translation>Choisir un dossier</translation>
    </message>
    <message>
        <source>Save as Node</source>
        <translation>Enregistrer comme nœud</translation>
    </message>
    <message>
        <source>Make nodes of the tags that are required now</source>
        <translation>Fait des nœuds avec les étiquettes exigées en ce moment</translation>
    </message>
</context>
<context>
    <name>CaughtError</name>
    <message>
        <source>There is not enough memory.</source>
        <translation>La mémoire est insuffisante.</translation>
    </message>
    <message>
        <source>Something unexpected went wrong: %1</source>
        <translation>Un incident imprévu s’est produit&#xa0;: %1</translation>
    </message>
    <message>
        <source>Something unexpected went wrong.</source>
        <translation>Un incident imprévu s’est produit.</translation>
    </message>
</context>
<context>
    <name>ChunkRows</name>
    <message>
        <source>External files without a path: %1</source>
        <translation>Fichiers externes sans chemin&#xa0;: %1</translation>
    </message>
    <message>
        <source>Files with texts that are too long: %1</source>
        <translation>Fichiers dont les textes sont trop longs&#xa0;: %1</translation>
    </message>
    <message>
        <source>Files whose contents are missing or damaged: %1</source>
        <translation>Fichiers dont le contenu manque ou est endommagé&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>Collection</name>
    <message>
        <source>Move the node</source>
        <translation>Déplacer le nœud</translation>
    </message>
    <message>
        <source>The node moved</source>
        <translation>Nœud déplacé</translation>
    </message>
</context>
<context>
    <name>CollectionOpener</name>
    <message>
        <source>Error opening database</source>
        <translation>Erreur à l’ouverture de la base de données</translation>
    </message>
    <message>
        <source>The database is in use by another program. Waiting ...</source>
        <translation>La base de données est utilisée par un autre programme. En attente…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Open Database</source>
        <translation>Ouvrir une base de données</translation>
    </message>
    <message>
        <source>Opening database...</source>
        <translation>Ouverture de la base de données…</translation>
    </message>
</context>
<context>
    <name>ColumnMenu</name>
    <message>
        <source>Columns</source>
        <translation>Colonnes</translation>
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
        <translation>Utilisation&#xa0;: vorna [FICHIER]

Classe documents, images et hyperliens dans une base de données, avec des étiquettes au lieu de dossiers.

FICHIER est une base de données (.vrn) à ouvrir ou une coquille (.vsh) à importer. Sans lui, la
dernière base de données ouverte est rouverte.

  --help     afficher ce texte
  --version  afficher la version
</translation>
    </message>
</context>
<context>
    <name>CompletionList</name>
    <message>
        <source>Names</source>
        <translation>Noms</translation>
    </message>
</context>
<context>
    <name>CompletionModel</name>
    <message>
        <source>New tag &quot;%1&quot;</source>
        <translation>Nouvelle étiquette «&#x202f;%1&#x202f;»</translation>
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
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Use New Name: %1</source>
        <translation>Utiliser un nouveau nom&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>Connections</name>
    <message>
        <source>The server does not use standard strings.</source>
        <translation>Le serveur n’utilise pas de chaînes standard.</translation>
    </message>
    <message>
        <source>The database file &quot;%1&quot; is missing.</source>
        <translation>Le fichier de base de données «&#x202f;%1&#x202f;» est introuvable.</translation>
    </message>
</context>
<context>
    <name>ContentGroups</name>
    <message>
        <source>Files of the same contents as another one, which has their tags: %1</source>
        <translation>Fichiers de même contenu qu’un autre, qui a leurs étiquettes&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>ContentMatchModel</name>
    <message>
        <source>    Content matched other external file
</source>
        <translation>    Contenu identique à un autre fichier externe
</translation>
    </message>
    <message>
        <source>No content duplicates.</source>
        <translation>Aucun doublon de contenu.</translation>
    </message>
    <message numerus="yes">
        <source>The following%1 files and hyperlinks will not be added to the database:</source>
        <translation>
            <numerusform>Le fichier ou hyperlien suivant ne sera pas ajouté à la base de données (nombre&#xa0;:%1)&#xa0;:</numerusform>
            <numerusform>Les%1 fichiers et hyperliens suivants ne seront pas ajoutés à la base de données&#xa0;:</numerusform>
        </translation>
    </message>
    <message>
        <source>    Took the place of the following missing file in the database:
</source>
        <translation>    A pris la place du fichier manquant suivant de la base de données&#xa0;:
</translation>
    </message>
    <message>
        <source>External content duplicate group.</source>
        <translation>Groupe de fichiers externes de même contenu.</translation>
    </message>
    <message>
        <source>Content matched %1, which is one of the name matches.
</source>
        <translation>Contenu identique à %1, qui est l’une des correspondances de nom.
</translation>
    </message>
    <message>
        <source>Content matched %1, which could not be added to the database.
</source>
        <translation>Contenu identique à %1, qui n’a pas pu être ajouté à la base de données.
</translation>
    </message>
    <message>
        <source>Content matched %1, which was added to the database.
</source>
        <translation>Contenu identique à %1, qui a été ajouté à la base de données.
</translation>
    </message>
    <message>
        <source>    Content matched the following hyperlink in the database:
</source>
        <translation>    Contenu identique à l’hyperlien suivant de la base de données&#xa0;:
</translation>
    </message>
    <message>
        <source>    Content matched the following hyperlinks in the database:
</source>
        <translation>    Contenu identique aux hyperliens suivants de la base de données&#xa0;:
</translation>
    </message>
    <message>
        <source>    Content matched the following file in the database:
</source>
        <translation>    Contenu identique au fichier suivant de la base de données&#xa0;:
</translation>
    </message>
    <message>
        <source>    Content matched the following files in the database:
</source>
        <translation>    Contenu identique aux fichiers suivants de la base de données&#xa0;:
</translation>
    </message>
    <message>
        <source>%1  Size: %2  Last Modified: %3</source>
        <translation>%1  Taille&#xa0;: %2  Dernière modification&#xa0;: %3</translation>
    </message>
    <message>
        <source>
           Tags: %1</source>
        <translation>
           Étiquettes&#xa0;: %1</translation>
    </message>
    <message>
        <source>Database file: %1   Size: %2 Last Modified: %3</source>
        <translation>Fichier de la base&#xa0;: %1   Taille&#xa0;: %2 Dernière modification&#xa0;: %3</translation>
    </message>
</context>
<context>
    <name>ContentsModel</name>
    <message>
        <source>Thumbnail</source>
        <translation>Vignette</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Modification Date</source>
        <translation>Date de modification</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Addition Date</source>
        <translation>Date d’ajout</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Étiquettes</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>ID Code</source>
        <translation>Code ID</translation>
    </message>
    <message>
        <source>LoadID</source>
        <translation>ID de lot</translation>
    </message>
</context>
<context>
    <name>DatabaseConnectDialog</name>
    <message>
        <source>Connect to Database</source>
        <translation>Connexion à une base de données</translation>
    </message>
    <message>
        <source>A database that others share on a PostgreSQL server. The password is not stored.</source>
        <translation>Une base de données que d’autres partagent sur un serveur PostgreSQL. Le mot de passe n’est pas enregistré.</translation>
    </message>
    <message>
        <source>&amp;Host:</source>
        <translation>&amp;Hôte&#xa0;:</translation>
    </message>
    <message>
        <source>server.example.com</source>
        <translation>server.example.com</translation>
    </message>
    <message>
        <source>Po&amp;rt:</source>
        <translation>Po&amp;rt&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Database:</source>
        <translation>&amp;Base de données&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>&amp;Utilisateur&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Mot de passe&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>Se &amp;connecter</translation>
    </message>
    <message>
        <source>Invalid database details</source>
        <translation>Informations de connexion non valides</translation>
    </message>
    <message>
        <source>Provided database details were invalid.</source>
        <translation>Les informations fournies sur la base de données ne sont pas valides.</translation>
    </message>
</context>
<context>
    <name>DatabaseContentsSelector</name>
    <message>
        <source>Import Options</source>
        <translation>Options d’importation</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Fichiers</translation>
    </message>
    <message>
        <source>File Descriptions</source>
        <translation>Descriptions des fichiers</translation>
    </message>
    <message>
        <source>Append Descriptions</source>
        <translation>Ajouter à la suite des descriptions</translation>
    </message>
    <message>
        <source>Replace Descriptions</source>
        <translation>Remplacer les descriptions</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Étiquettes</translation>
    </message>
    <message>
        <source>Tag Browsing Nodes</source>
        <translation>Nœuds de navigation</translation>
    </message>
    <message>
        <source>Tag Relationships</source>
        <translation>Relations d’étiquettes</translation>
    </message>
    <message>
        <source>Tag to File Relationships</source>
        <translation>Liens entre étiquettes et fichiers</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Groupes d’étiquettes</translation>
    </message>
    <message>
        <source>What should the files that this database shares with the shell &quot;%1&quot; take over?</source>
        <translation>Que doivent reprendre les fichiers que cette base de données a en commun avec la coquille «&#x202f;%1&#x202f;»&#x202f;?</translation>
    </message>
    <message>
        <source>What should be imported from &quot;%1&quot;?</source>
        <translation>Que faut-il importer de «&#x202f;%1&#x202f;»&#x202f;?</translation>
    </message>
</context>
<context>
    <name>DatabaseErrors</name>
    <message>
        <source>Connection problem</source>
        <translation>Problème de connexion</translation>
    </message>
    <message>
        <source>Could not connect to the database.</source>
        <translation>La connexion à la base de données a échoué.</translation>
    </message>
    <message>
        <source>This may be a result of the file permissions of the database file.</source>
        <translation>Cela peut venir des droits d’accès au fichier de base de données.</translation>
    </message>
    <message>
        <source>This may be a result of the permissions of the database file.</source>
        <translation>Cela peut venir des droits du fichier de base de données.</translation>
    </message>
    <message>
        <source>This is the result of a disk I/O error.</source>
        <translation>Cela vient d’une erreur d’entrée-sortie du disque.</translation>
    </message>
    <message>
        <source>The database file may be corrupt.</source>
        <translation>Le fichier de base de données est peut-être endommagé.</translation>
    </message>
    <message>
        <source>The database is full.</source>
        <translation>La base de données est pleine.</translation>
    </message>
    <message>
        <source>The database file could not be opened.</source>
        <translation>Le fichier de base de données n’a pas pu être ouvert.</translation>
    </message>
    <message>
        <source>This may be a result of authorization issues.</source>
        <translation>Cela peut venir d’un défaut d’autorisation.</translation>
    </message>
    <message>
        <source>The file opened is not a database file.</source>
        <translation>Le fichier ouvert n’est pas un fichier de base de données.</translation>
    </message>
    <message>
        <source>An error has occurred accessing the database. </source>
        <translation>Une erreur s’est produite lors de l’accès à la base de données. </translation>
    </message>
    <message>
        <source>Error Accessing Database</source>
        <translation>Erreur d’accès à la base de données</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Application can&apos;t continue to work with the current database, due to error.
What do you want to do?</source>
        <translation>En raison d’une erreur, l’application ne peut pas continuer à utiliser la base de données ouverte.
Que voulez-vous faire&#x202f;?</translation>
    </message>
    <message>
        <source>Open another database</source>
        <translation>Ouvrir une autre base de données</translation>
    </message>
    <message>
        <source>Exit application</source>
        <translation>Quitter l’application</translation>
    </message>
</context>
<context>
    <name>DatabaseImport</name>
    <message>
        <source>Import Shell</source>
        <translation>Importer une coquille</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
    <message>
        <source>A shell is imported into a database. Open a local database that may be changed, and choose Import, Shell.</source>
        <translation>Une coquille s’importe dans une base de données. Ouvrez une base de données locale modifiable et choisissez «&#x202f;Importer&#x202f;», «&#x202f;Coquille&#x202f;».</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no file, or is gone. Nothing was imported.</source>
        <translation>«&#x202f;%1&#x202f;» n’est pas un fichier, ou a disparu. Rien n’a été importé.</translation>
    </message>
</context>
<context>
    <name>DatabaseLock</name>
    <message>
        <source>The database is in use by another program. Please try again later.</source>
        <translation>La base de données est utilisée par un autre programme. Veuillez réessayer plus tard.</translation>
    </message>
</context>
<context>
    <name>DatabaseMaker</name>
    <message>
        <source>Create New Database</source>
        <translation>Créer une base de données</translation>
    </message>
    <message>
        <source>Failed to create database</source>
        <translation>La base de données n’a pas pu être créée</translation>
    </message>
    <message>
        <source>Cannot remove currently open database.</source>
        <translation>La base de données ouverte ne peut pas être supprimée.</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 existe déjà.
Voulez-vous le remplacer&#x202f;?</translation>
    </message>
    <message>
        <source>Failed to remove existent database.</source>
        <translation>La base de données existante n’a pas pu être supprimée.</translation>
    </message>
    <message>
        <source>A database could not be created at this place.</source>
        <translation>Aucune base de données n’a pu être créée à cet endroit.</translation>
    </message>
    <message>
        <source>Failed to open database</source>
        <translation>La base de données n’a pas pu être ouverte</translation>
    </message>
    <message>
        <source>Failed to open new database.</source>
        <translation>La nouvelle base de données n’a pas pu être ouverte.</translation>
    </message>
</context>
<context>
    <name>DatabaseManger</name>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <source>The connection to the database is lost.</source>
        <translation>La connexion à la base de données est perdue.</translation>
    </message>
    <message>
        <source>The database could not be read completely, so it cannot be changed.</source>
        <translation>La base de données n’a pas pu être lue en entier&#x202f;; elle ne peut donc pas être modifiée.</translation>
    </message>
    <message>
        <source>Local data is updating.</source>
        <translation>Les données locales sont en cours de mise à jour.</translation>
    </message>
    <message>
        <source>Name Missing</source>
        <translation>Nom manquant</translation>
    </message>
    <message>
        <source>A name must not be empty.</source>
        <translation>Un nom ne doit pas être vide.</translation>
    </message>
    <message>
        <source>The text is longer than %1 characters and was not stored.</source>
        <translation>Le texte dépasse %1 caractères et n’a pas été enregistré.</translation>
    </message>
    <message>
        <source>Exporting</source>
        <translation>Exportation</translation>
    </message>
    <message>
        <source>Nothing can be exported to &quot;%1&quot;.

The reason: %2</source>
        <translation>Rien ne peut être exporté vers «&#x202f;%1&#x202f;».

La raison&#xa0;: %2</translation>
    </message>
</context>
<context>
    <name>DatabaseVersionCheck</name>
    <message>
        <source>The database holds parts that Vorna did not make, such as views or triggers. It was not opened, so that nothing in it can run.</source>
        <translation>La base de données contient des éléments que Vorna n’a pas créés, comme des vues ou des déclencheurs. Elle n’a pas été ouverte, afin que rien de cela ne puisse s’exécuter.</translation>
    </message>
    <message>
        <source>The database was created with an earlier version of Vorna.</source>
        <translation>La base de données a été créée avec une version antérieure de Vorna.</translation>
    </message>
    <message>
        <source>The file will be upgraded to the current version but will not be backward compatible.</source>
        <translation>Le fichier sera mis à niveau vers la version actuelle, mais ne sera plus compatible avec les précédentes.</translation>
    </message>
    <message>
        <source>Database upgraded successfully.</source>
        <translation>La base de données a été mise à niveau.</translation>
    </message>
    <message>
        <source>Problem occurred while upgrading database. Probably you have no permission to perform this operation.</source>
        <translation>Un problème est survenu lors de la mise à niveau de la base de données. Vous n’avez sans doute pas l’autorisation d’effectuer cette opération.</translation>
    </message>
    <message>
        <source>The database is not supported</source>
        <translation>La base de données n’est pas prise en charge</translation>
    </message>
    <message>
        <source>The database could be corrupted please check it.</source>
        <translation>La base de données est peut-être endommagée&#x202f;; veuillez la vérifier.</translation>
    </message>
    <message>
        <source>Error opening database</source>
        <translation>Erreur à l’ouverture de la base de données</translation>
    </message>
</context>
<context>
    <name>DescriptionBar</name>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1&#x202f;%</translation>
    </message>
</context>
<context>
    <name>DesktopOpener</name>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Failed opening hyperlink.</source>
        <translation>Impossible d’ouvrir l’hyperlien.</translation>
    </message>
    <message>
        <source>Error opening file</source>
        <translation>Erreur à l’ouverture du fichier</translation>
    </message>
    <message>
        <source>Vorna is unable to open this file. There may not be any application associated with the file type.</source>
        <translation>Vorna ne peut pas ouvrir ce fichier. Il se peut qu’aucune application ne soit associée à ce type de fichier.</translation>
    </message>
    <message>
        <source>Error opening folder</source>
        <translation>Erreur à l’ouverture du dossier</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; could not be shown. There may not be any file manager installed.</source>
        <translation>Le dossier «&#x202f;%1&#x202f;» n’a pas pu être affiché. Il se peut qu’aucun gestionnaire de fichiers ne soit installé.</translation>
    </message>
</context>
<context>
    <name>DuplicateManager</name>
    <message>
        <source>Grouping files with duplicate content</source>
        <translation>Regroupement des fichiers de même contenu</translation>
    </message>
    <message>
        <source>Grouping name duplicates</source>
        <translation>Regroupement des fichiers de même nom</translation>
    </message>
    <message>
        <source>Grouping by content...
Examining file number  %1</source>
        <translation>Regroupement par contenu…
Examen du fichier numéro  %1</translation>
    </message>
</context>
<context>
    <name>DuplicatePrompt</name>
    <message>
        <source>Duplicates</source>
        <translation>Doublons</translation>
    </message>
    <message>
        <source>Content Matches</source>
        <translation>Même contenu</translation>
    </message>
    <message>
        <source>Name Matches</source>
        <translation>Même nom</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Tout sélectionner</translation>
    </message>
    <message>
        <source>Deselect all</source>
        <translation>Tout désélectionner</translation>
    </message>
    <message>
        <source>The duplicate prompt dialog is being created.</source>
        <translation>La liste des doublons est en cours de création.</translation>
    </message>
    <message>
        <source>Creating Duplicate Prompt</source>
        <translation>Doublons</translation>
    </message>
    <message>
        <source>One file is there already.</source>
        <translation>Un fichier est déjà présent.</translation>
    </message>
    <message>
        <source>It got the tag %1.</source>
        <translation>Il a reçu l’étiquette %1.</translation>
    </message>
    <message>
        <source>It got the tags %1.</source>
        <translation>Il a reçu les étiquettes %1.</translation>
    </message>
    <message>
        <source>They got the tag %1.</source>
        <translation>Ils ont reçu l’étiquette %1.</translation>
    </message>
    <message>
        <source>They got the tags %1.</source>
        <translation>Ils ont reçu les étiquettes %1.</translation>
    </message>
    <message>
        <source>No name duplicates.</source>
        <translation>Aucun doublon de nom.</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Only the first %1 of the %2 selected lines were copied.</source>
        <translation>Seules les %1 premières des %2 lignes sélectionnées ont été copiées.</translation>
    </message>
    <message>
        <source>The database is closed.</source>
        <translation>La base de données est fermée.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files are there already.</source>
        <translation>
            <numerusform>%Ln fichier est déjà présent.</numerusform>
            <numerusform>%Ln fichiers sont déjà présents.</numerusform>
        </translation>
    </message>
    <message>
        <source>The following files have matching names. Deselect those you do not want added.</source>
        <translation>Les fichiers suivants ont le même nom. Désélectionnez ceux que vous ne voulez pas ajouter.</translation>
    </message>
    <message>
        <source>The following files have matching names. Deselect the checked file if you do not want it added.</source>
        <translation>Les fichiers suivants ont le même nom. Désélectionnez le fichier coché si vous ne voulez pas l’ajouter.</translation>
    </message>
</context>
<context>
    <name>EditNotes</name>
    <message>
        <source>Change tags of 1 file</source>
        <translation>Modifier les étiquettes de 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>Change tags of %Ln files</source>
        <translation>
            <numerusform>Modifier les étiquettes de %Ln fichier</numerusform>
            <numerusform>Modifier les étiquettes de %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>Tags of 1 file changed</source>
        <translation>Étiquettes de 1 fichier modifiées</translation>
    </message>
    <message numerus="yes">
        <source>Tags of %Ln files changed</source>
        <translation>
            <numerusform>Étiquettes de %Ln fichier modifiées</numerusform>
            <numerusform>Étiquettes de %Ln fichiers modifiées</numerusform>
        </translation>
    </message>
    <message>
        <source>Add tags to 1 file</source>
        <translation>Ajouter des étiquettes à 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>Add tags to %Ln files</source>
        <translation>
            <numerusform>Ajouter des étiquettes à %Ln fichier</numerusform>
            <numerusform>Ajouter des étiquettes à %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 added to 1 file</source>
        <translation>%1 ajoutée à 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%1 added to %Ln files</source>
        <translation>
            <numerusform>%1 ajoutée à %Ln fichier</numerusform>
            <numerusform>%1 ajoutée à %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 tags added to 1 file</source>
        <translation>%1 étiquettes ajoutées à 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%1 tags added to %Ln files</source>
        <translation>
            <numerusform>%1 étiquettes ajoutées à %Ln fichier</numerusform>
            <numerusform>%1 étiquettes ajoutées à %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove tags from 1 file</source>
        <translation>Retirer des étiquettes de 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>Remove tags from %Ln files</source>
        <translation>
            <numerusform>Retirer des étiquettes de %Ln fichier</numerusform>
            <numerusform>Retirer des étiquettes de %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 removed from 1 file</source>
        <translation>%1 retirée de 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%1 removed from %Ln files</source>
        <translation>
            <numerusform>%1 retirée de %Ln fichier</numerusform>
            <numerusform>%1 retirée de %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 tags removed from 1 file</source>
        <translation>%1 étiquettes retirées de 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%1 tags removed from %Ln files</source>
        <translation>
            <numerusform>%1 étiquettes retirées de %Ln fichier</numerusform>
            <numerusform>%1 étiquettes retirées de %Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file added</source>
        <translation>1 fichier ajouté</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files added</source>
        <translation>
            <numerusform>%Ln fichier ajouté</numerusform>
            <numerusform>%Ln fichiers ajoutés</numerusform>
        </translation>
    </message>
    <message>
        <source>1 was there already</source>
        <translation>1 était déjà là</translation>
    </message>
    <message numerus="yes">
        <source>%Ln were there already</source>
        <translation>
            <numerusform>%Ln était déjà là</numerusform>
            <numerusform>%Ln étaient déjà là</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>1 file added, 2 were there already</comment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Add the tag %1</source>
        <translation>Ajouter l’étiquette %1</translation>
    </message>
    <message>
        <source>The tag %1 added</source>
        <translation>Étiquette %1 ajoutée</translation>
    </message>
    <message>
        <source>Rename the tag %1</source>
        <translation>Renommer l’étiquette %1</translation>
    </message>
    <message>
        <source>%1 renamed to %2</source>
        <translation>%1 renommé en %2</translation>
    </message>
    <message>
        <source>Describe the tag %1</source>
        <translation>Décrire l’étiquette %1</translation>
    </message>
    <message>
        <source>Description of %1 changed</source>
        <translation>Description de %1 modifiée</translation>
    </message>
    <message>
        <source>Remove the tag %1</source>
        <translation>Retirer l’étiquette %1</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln tags</source>
        <translation>
            <numerusform>Retirer %Ln étiquette</numerusform>
            <numerusform>Retirer %Ln étiquettes</numerusform>
        </translation>
    </message>
    <message>
        <source>The tag %1 removed</source>
        <translation>Étiquette %1 retirée</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags removed</source>
        <translation>
            <numerusform>%Ln étiquette retirée</numerusform>
            <numerusform>%Ln étiquettes retirées</numerusform>
        </translation>
    </message>
    <message>
        <source>Add the group %1</source>
        <translation>Ajouter le groupe %1</translation>
    </message>
    <message>
        <source>The group %1 added</source>
        <translation>Groupe %1 ajouté</translation>
    </message>
    <message>
        <source>Rename the group %1</source>
        <translation>Renommer le groupe %1</translation>
    </message>
    <message>
        <source>Remove the group %1</source>
        <translation>Retirer le groupe %1</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln groups</source>
        <translation>
            <numerusform>Retirer %Ln groupe</numerusform>
            <numerusform>Retirer %Ln groupes</numerusform>
        </translation>
    </message>
    <message>
        <source>The group %1 removed</source>
        <translation>Groupe %1 retiré</translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups removed</source>
        <translation>
            <numerusform>%Ln groupe retiré</numerusform>
            <numerusform>%Ln groupes retirés</numerusform>
        </translation>
    </message>
    <message>
        <source>Change the tags of the group %1</source>
        <translation>Modifier les étiquettes du groupe %1</translation>
    </message>
    <message numerus="yes">
        <source>Change the tags of %Ln groups</source>
        <translation>
            <numerusform>Modifier les étiquettes de %Ln groupe</numerusform>
            <numerusform>Modifier les étiquettes de %Ln groupes</numerusform>
        </translation>
    </message>
    <message>
        <source>Tags of the group %1 changed</source>
        <translation>Étiquettes du groupe %1 modifiées</translation>
    </message>
    <message numerus="yes">
        <source>Tags of %Ln groups changed</source>
        <translation>
            <numerusform>Étiquettes de %Ln groupe modifiées</numerusform>
            <numerusform>Étiquettes de %Ln groupes modifiées</numerusform>
        </translation>
    </message>
    <message>
        <source>Add the node %1</source>
        <translation>Ajouter le nœud %1</translation>
    </message>
    <message numerus="yes">
        <source>Add %Ln nodes</source>
        <translation>
            <numerusform>Ajouter %Ln nœud</numerusform>
            <numerusform>Ajouter %Ln nœuds</numerusform>
        </translation>
    </message>
    <message>
        <source>The node %1 added</source>
        <translation>Nœud %1 ajouté</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes added</source>
        <translation>
            <numerusform>%Ln nœud ajouté</numerusform>
            <numerusform>%Ln nœuds ajoutés</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove 1 node</source>
        <translation>Retirer 1 nœud</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln nodes</source>
        <translation>
            <numerusform>Retirer %Ln nœud</numerusform>
            <numerusform>Retirer %Ln nœuds</numerusform>
        </translation>
    </message>
    <message>
        <source>1 node removed</source>
        <translation>1 nœud retiré</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes removed</source>
        <translation>
            <numerusform>%Ln nœud retiré</numerusform>
            <numerusform>%Ln nœuds retirés</numerusform>
        </translation>
    </message>
    <message>
        <source>Invert the node %1</source>
        <translation>Inverser le nœud %1</translation>
    </message>
    <message>
        <source>%1 inverted</source>
        <translation>%1 inversé</translation>
    </message>
    <message>
        <source>%1 no longer inverted</source>
        <translation>%1 n’est plus inversé</translation>
    </message>
    <message>
        <source>Change the node %1</source>
        <translation>Modifier le nœud %1</translation>
    </message>
    <message>
        <source>Tag relationships of %1 switched on</source>
        <translation>Relations d’étiquettes de %1 activées</translation>
    </message>
    <message>
        <source>Tag relationships of %1 switched off</source>
        <translation>Relations d’étiquettes de %1 désactivées</translation>
    </message>
    <message>
        <source>Add %1 to the tag relationships</source>
        <translation>Ajouter %1 aux relations d’étiquettes</translation>
    </message>
    <message numerus="yes">
        <source>Add %Ln tag relationships</source>
        <translation>
            <numerusform>Ajouter %Ln relation d’étiquettes</numerusform>
            <numerusform>Ajouter %Ln relations d’étiquettes</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 added to the tag relationships</source>
        <translation>%1 ajoutée aux relations d’étiquettes</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships added</source>
        <translation>
            <numerusform>%Ln relation d’étiquettes ajoutée</numerusform>
            <numerusform>%Ln relations d’étiquettes ajoutées</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove 1 tag relationship</source>
        <translation>Retirer 1 relation d’étiquettes</translation>
    </message>
    <message numerus="yes">
        <source>Remove %Ln tag relationships</source>
        <translation>
            <numerusform>Retirer %Ln relation d’étiquettes</numerusform>
            <numerusform>Retirer %Ln relations d’étiquettes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tag relationship removed</source>
        <translation>1 relation d’étiquettes retirée</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships removed</source>
        <translation>
            <numerusform>%Ln relation d’étiquettes retirée</numerusform>
            <numerusform>%Ln relations d’étiquettes retirées</numerusform>
        </translation>
    </message>
    <message>
        <source>Rename the file %1</source>
        <translation>Renommer le fichier %1</translation>
    </message>
    <message>
        <source>Describe the file %1</source>
        <translation>Décrire le fichier %1</translation>
    </message>
    <message>
        <source>%1 merged into %2</source>
        <translation>%1 fusionnée dans %2</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags merged into %1</source>
        <translation>
            <numerusform>%Ln étiquette fusionnée dans %1</numerusform>
            <numerusform>%Ln étiquettes fusionnées dans %1</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file changed</source>
        <translation>1 fichier modifié</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files changed</source>
        <translation>
            <numerusform>%Ln fichier modifié</numerusform>
            <numerusform>%Ln fichiers modifiés</numerusform>
        </translation>
    </message>
    <message>
        <source>Merge %1 into %2</source>
        <translation>Fusionner %1 dans %2</translation>
    </message>
    <message numerus="yes">
        <source>Merge %Ln tags into %1</source>
        <translation>
            <numerusform>Fusionner %Ln étiquette dans %1</numerusform>
            <numerusform>Fusionner %Ln étiquettes dans %1</numerusform>
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
        <translation>La base de données est endommagée&#xa0;: elle annonce plus de lignes que son fichier ne peut en contenir.</translation>
    </message>
</context>
<context>
    <name>ErrorTeller</name>
    <message>
        <source>Canceled</source>
        <translation>Annulé</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <source>The database is busy. Please try again.</source>
        <translation>La base de données est occupée. Veuillez réessayer.</translation>
    </message>
</context>
<context>
    <name>ExportCommand</name>
    <message>
        <source>Exporting</source>
        <translation>Exportation</translation>
    </message>
    <message>
        <source>Cannot export to currently open database!</source>
        <translation>Impossible d’exporter vers la base de données ouverte&#x202f;!</translation>
    </message>
    <message>
        <source>&quot;%1&quot; already exists.
Do you want to replace it?</source>
        <translation>«&#x202f;%1&#x202f;» existe déjà.
Voulez-vous le remplacer&#x202f;?</translation>
    </message>
    <message>
        <source>Export Target</source>
        <translation>Cible de l’exportation</translation>
    </message>
    <message>
        <source>What is selected has no files to export.</source>
        <translation>La sélection ne contient aucun fichier à exporter.</translation>
    </message>
</context>
<context>
    <name>ExportMenu</name>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Base de données</translation>
    </message>
    <message>
        <source>Shell</source>
        <translation>Coquille</translation>
    </message>
    <message>
        <source>CSV File</source>
        <translation>Fichier CSV</translation>
    </message>
</context>
<context>
    <name>ExportSummary</name>
    <message>
        <source>Exported to &quot;%1&quot;.
Files: %2</source>
        <translation>Exporté vers «&#x202f;%1&#x202f;».
Fichiers&#xa0;: %2</translation>
    </message>
    <message>
        <source>Exported to &quot;%1&quot;.
Files: %2, tags: %3, browsing nodes: %4</source>
        <translation>Exporté vers «&#x202f;%1&#x202f;».
Fichiers&#xa0;: %2, étiquettes&#xa0;: %3, nœuds de navigation&#xa0;: %4</translation>
    </message>
    <message>
        <source>Not exported: %1. %2
%3</source>
        <translation>Non exportés&#xa0;: %1. %2
%3</translation>
    </message>
    <message>
        <source>Not exported, as they are no longer in the database: %1.</source>
        <translation>Non exportés, car ils ne sont plus dans la base de données&#xa0;: %1.</translation>
    </message>
    <message>
        <source>Tag relationships not exported, as they are too deep: %1.</source>
        <translation>Relations d’étiquettes non exportées, car trop profondes&#xa0;: %1.</translation>
    </message>
    <message>
        <source>Fields that hold a double quote: %1. It stands in the file as it is, and other programs may take it for the end of the field.</source>
        <translation>Champs qui contiennent un guillemet double&#xa0;: %1. Il figure tel quel dans le fichier, et d’autres programmes peuvent le prendre pour la fin du champ.</translation>
    </message>
</context>
<context>
    <name>ExportTarget</name>
    <message>
        <source>No database can be made there. The disk may be full, or take no locks.</source>
        <translation>Aucune base de données ne peut y être créée. Le disque est peut-être plein ou n’accepte pas de verrous.</translation>
    </message>
    <message>
        <source>A folder has this name.</source>
        <translation>Un dossier porte ce nom.</translation>
    </message>
    <message>
        <source>A link has this name, and what it leads to is gone.</source>
        <translation>Un lien porte ce nom, et sa cible a disparu.</translation>
    </message>
    <message>
        <source>The file there is write-protected.</source>
        <translation>Le fichier qui s’y trouve est protégé en écriture.</translation>
    </message>
    <message>
        <source>The database there is in use, or a change of it was broken off: there is a file &quot;%1&quot;.</source>
        <translation>La base de données qui s’y trouve est utilisée, ou une modification y a été interrompue&#xa0;: il y a un fichier «&#x202f;%1&#x202f;».</translation>
    </message>
</context>
<context>
    <name>ExternalFileView</name>
    <message>
        <source>External Files</source>
        <translation>Fichiers externes</translation>
    </message>
</context>
<context>
    <name>ExternalFilesDock</name>
    <message>
        <source>External Files</source>
        <translation>Fichiers externes</translation>
    </message>
</context>
<context>
    <name>FavouriteMenu</name>
    <message>
        <source>Favourite Key</source>
        <translation>Touche de favori</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>%1: free</source>
        <translation>%1&#xa0;: libre</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucune</translation>
    </message>
</context>
<context>
    <name>FeedbackDialog</name>
    <message>
        <source>Feedback</source>
        <translation>Commentaires</translation>
    </message>
    <message>
        <source>Message:</source>
        <translation>Message&#xa0;:</translation>
    </message>
    <message>
        <source>Email address (optional):</source>
        <translation>Adresse électronique (facultative)&#xa0;:</translation>
    </message>
    <message>
        <source>Version: %1</source>
        <translation>Version&#xa0;: %1</translation>
    </message>
    <message>
        <source>&amp;Send</source>
        <translation>&amp;Envoyer</translation>
    </message>
    <message>
        <source>Feedback Received</source>
        <translation>Commentaires reçus</translation>
    </message>
    <message>
        <source>Your message has been recorded. Thank you.</source>
        <translation>Votre message a été enregistré. Merci.</translation>
    </message>
    <message>
        <source>Network error</source>
        <translation>Erreur réseau</translation>
    </message>
    <message>
        <source>An error occurred while sending feedback.</source>
        <translation>Une erreur s’est produite lors de l’envoi des commentaires.</translation>
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
        <translation>Vignettes</translation>
    </message>
    <message>
        <source>File Search</source>
        <translation>Recherche de fichiers</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Ajouter des fichiers</translation>
    </message>
    <message>
        <source>Add Hyperlink</source>
        <translation>Ajouter un hyperlien</translation>
    </message>
    <message>
        <source>Locate Missing Files</source>
        <translation>Localiser les fichiers manquants</translation>
    </message>
    <message>
        <source>Transfer to Internal</source>
        <translation>Transférer dans la base</translation>
    </message>
    <message>
        <source>Extract Files</source>
        <translation>Extraire les fichiers</translation>
    </message>
    <message>
        <source>Remove from node</source>
        <translation>Retirer du nœud</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>File Tags</source>
        <translation>Étiquettes des fichiers</translation>
    </message>
    <message>
        <source>Browsing Tree Tags</source>
        <translation>Étiquettes de l’arbre de navigation</translation>
    </message>
    <message>
        <source>Open for Viewing</source>
        <translation>Ouvrir pour consultation</translation>
    </message>
    <message>
        <source>Show in Explorer</source>
        <translation>Afficher dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Extract File</source>
        <translation>Extraire le fichier</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Propriétés</translation>
    </message>
    <message>
        <source>Show related files</source>
        <translation>Afficher les fichiers apparentés</translation>
    </message>
    <message>
        <source>Locate missing item</source>
        <translation>Localiser l’élément manquant</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Étiquettes</translation>
    </message>
    <message>
        <source>Delete File</source>
        <translation>Supprimer le fichier</translation>
    </message>
    <message>
        <source>Delete Files</source>
        <translation>Supprimer les fichiers</translation>
    </message>
    <message>
        <source>Delete Link</source>
        <translation>Supprimer le lien</translation>
    </message>
    <message>
        <source>Delete Links</source>
        <translation>Supprimer les liens</translation>
    </message>
    <message>
        <source>Delete Item</source>
        <translation>Supprimer l’élément</translation>
    </message>
    <message>
        <source>Delete Items</source>
        <translation>Supprimer les éléments</translation>
    </message>
    <message>
        <source>Locate missing file</source>
        <translation>Localiser le fichier manquant</translation>
    </message>
    <message>
        <source>Locate missing files</source>
        <translation>Localiser les fichiers manquants</translation>
    </message>
    <message>
        <source>Open Externally</source>
        <translation>Ouvrir avec une autre application</translation>
    </message>
</context>
<context>
    <name>FileCommands</name>
    <message>
        <source>&quot;%1&quot; has no tags that other files could share.</source>
        <translation>«&#x202f;%1&#x202f;» n’a pas d’étiquette que d’autres fichiers pourraient partager.</translation>
    </message>
    <message>
        <source>Select the tags in the tags dock first.</source>
        <translation>Sélectionnez d’abord les étiquettes dans leur panneau.</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Ajouter des fichiers</translation>
    </message>
    <message>
        <source>Add Hyperlink</source>
        <translation>Ajouter un hyperlien</translation>
    </message>
    <message>
        <source>The database is closed.</source>
        <translation>La base de données est fermée.</translation>
    </message>
    <message>
        <source>Extract to Directory</source>
        <translation>Extraire dans un dossier</translation>
    </message>
    <message>
        <source>The selected files are inside the database already.</source>
        <translation>Les fichiers sélectionnés sont déjà dans la base de données.</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected link?</source>
        <translation>Voulez-vous vraiment supprimer le lien sélectionné&#x202f;?</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected links?</source>
        <translation>Voulez-vous vraiment supprimer les liens sélectionnés&#x202f;?</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected file?</source>
        <translation>Voulez-vous vraiment supprimer le fichier sélectionné&#x202f;?</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected files?</source>
        <translation>Voulez-vous vraiment supprimer les fichiers sélectionnés&#x202f;?</translation>
    </message>
</context>
<context>
    <name>FileCount</name>
    <message>
        <source>%1 of %2</source>
        <extracomment>at the end of a tag&apos;s row: how many of its files are shown, and how many it has</extracomment>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>%1, 1 file</source>
        <extracomment>what a screen reader says of a tag or a node: its name, and how many files it has</extracomment>
        <translation>%1, 1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%1, %Ln files</source>
        <translation>
            <numerusform>%1, %Ln fichier</numerusform>
            <numerusform>%1, %Ln fichiers</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1, %2 of %Ln files</source>
        <extracomment>the same: its name, how many of its files are shown, and how many it has</extracomment>
        <translation>
            <numerusform>%1, %2 sur %Ln fichier</numerusform>
            <numerusform>%1, %2 sur %Ln fichiers</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileExportDialog</name>
    <message>
        <source>Export Options</source>
        <translation>Options d’exportation</translation>
    </message>
    <message>
        <source>What should be exported beside the files and their tags?</source>
        <translation>Que faut-il exporter en plus des fichiers et de leurs étiquettes&#x202f;?</translation>
    </message>
    <message>
        <source>File descriptions</source>
        <translation>Descriptions des fichiers</translation>
    </message>
    <message>
        <source>Tag relationships</source>
        <translation>Relations d’étiquettes</translation>
    </message>
    <message>
        <source>Tag groups</source>
        <translation>Groupes d’étiquettes</translation>
    </message>
</context>
<context>
    <name>FileImporter</name>
    <message>
        <source>Files that could not be read or written: %1</source>
        <translation>Fichiers qui n’ont pas pu être lus ou écrits&#xa0;: %1</translation>
    </message>
    <message>
        <source>Copying files...</source>
        <translation>Copie des fichiers…</translation>
    </message>
</context>
<context>
    <name>FileListModel</name>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Dossier</translation>
    </message>
</context>
<context>
    <name>FileLocationDialog</name>
    <message>
        <source>File Location</source>
        <translation>Localisation de fichiers</translation>
    </message>
    <message>
        <source>Missing External Files</source>
        <translation>Fichiers externes manquants</translation>
    </message>
    <message>
        <source>The following files have been moved from the locations recorded in the database. They can be located by double-clicking in the list or specifying folders to look in.</source>
        <translation>Les fichiers suivants ne sont plus aux emplacements notés dans la base de données. Vous pouvez les localiser par un double clic dans la liste ou en indiquant les dossiers où chercher.</translation>
    </message>
    <message>
        <source>Folders to Check In</source>
        <translation>Dossiers à examiner</translation>
    </message>
    <message>
        <source>Add Folder</source>
        <translation>Ajouter un dossier</translation>
    </message>
    <message>
        <source>Remove Folder</source>
        <translation>Retirer le dossier</translation>
    </message>
    <message>
        <source>Delete Remaining Links</source>
        <translation>Supprimer les liens restants</translation>
    </message>
    <message>
        <source>All Files (*.*)</source>
        <translation>Tous les fichiers (*.*)</translation>
    </message>
    <message>
        <source>Locate File</source>
        <translation>Localiser un fichier</translation>
    </message>
    <message>
        <source>The database has this file already. One file cannot take two places.</source>
        <translation>La base de données a déjà ce fichier. Un fichier ne peut pas occuper deux places.</translation>
    </message>
    <message>
        <source>Found: %1 of %2.</source>
        <translation>Trouvés&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Do you really want to delete the selected links?</source>
        <translation>Voulez-vous vraiment supprimer les liens sélectionnés&#x202f;?</translation>
    </message>
</context>
<context>
    <name>FileModificationDialog</name>
    <message>
        <source>File Details Updated</source>
        <translation>Informations sur des fichiers mises à jour</translation>
    </message>
    <message>
        <source>Updated Files</source>
        <translation>Fichiers mis à jour</translation>
    </message>
    <message>
        <source>Deleted Files</source>
        <translation>Fichiers supprimés</translation>
    </message>
    <message>
        <source>Don&apos;t tell me again</source>
        <translation>Ne plus me le signaler</translation>
    </message>
    <message>
        <source>The following file has been edited or replaced.
Details have been updated.</source>
        <translation>Le fichier suivant a été modifié ou remplacé.
Ses informations ont été mises à jour.</translation>
    </message>
    <message>
        <source>The following files have been edited or replaced.
Details have been updated.</source>
        <translation>Les fichiers suivants ont été modifiés ou remplacés.
Leurs informations ont été mises à jour.</translation>
    </message>
    <message>
        <source>The following file was replaced externally and has now duplicate of the other file in the database.
This file has been deleted from the database.</source>
        <translation>Le fichier suivant a été remplacé à l’extérieur et fait maintenant double emploi avec un autre fichier de la base de données.
Il a été supprimé de la base de données.</translation>
    </message>
    <message>
        <source>The following files were replaced externally and have now duplicates of the other files in the database.
These files have been deleted from the database.</source>
        <translation>Les fichiers suivants ont été remplacés à l’extérieur et font maintenant double emploi avec d’autres fichiers de la base de données.
Ils ont été supprimés de la base de données.</translation>
    </message>
</context>
<context>
    <name>FileOpening</name>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Failed opening hyperlink.</source>
        <translation>L’hyperlien n’a pas pu être ouvert.</translation>
    </message>
    <message>
        <source>File No Longer Present</source>
        <translation>Fichier introuvable</translation>
    </message>
    <message>
        <source>This file is no longer present in its original path. It may have been moved, deleted or renamed.</source>
        <translation>Ce fichier n’est plus à son emplacement d’origine. Il a peut-être été déplacé, supprimé ou renommé.</translation>
    </message>
    <message>
        <source>Error opening file</source>
        <translation>Erreur à l’ouverture du fichier</translation>
    </message>
    <message>
        <source>Vorna is unable to open this file. There may not be any application associated with the file type.</source>
        <translation>Vorna ne peut pas ouvrir ce fichier. Aucune application n’est peut-être associée à ce type de fichier.</translation>
    </message>
    <message>
        <source>This file would start a program, which Vorna does not do. Start it from its folder if you trust it.</source>
        <translation>Ce fichier lancerait un programme, ce que Vorna ne fait pas. Si vous lui faites confiance, lancez-le depuis son dossier.</translation>
    </message>
    <message>
        <source>Vorna opens files and folders only, and this is neither.</source>
        <translation>Vorna n’ouvre que des fichiers et des dossiers, et ceci n’est ni l’un ni l’autre.</translation>
    </message>
    <message>
        <source>This file would start a program, which Vorna does not do out of a database. Extract it if you trust it, and start it from there.</source>
        <translation>Ce fichier lancerait un programme, ce que Vorna ne fait pas depuis une base de données. Si vous lui faites confiance, extrayez-le et lancez-le de là.</translation>
    </message>
    <message>
        <source>The disk with &quot;%1&quot; does not answer.</source>
        <translation>Le disque avec «&#x202f;%1&#x202f;» ne répond pas.</translation>
    </message>
</context>
<context>
    <name>FileOperationProgress</name>
    <message>
        <source>Vorna File Operation</source>
        <translation>Opération sur les fichiers</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
</context>
<context>
    <name>FileOperationProvider</name>
    <message>
        <source>Add Hyperlink</source>
        <translation>Ajouter un hyperlien</translation>
    </message>
</context>
<context>
    <name>FileOperationWorker</name>
    <message>
        <source>Exporting files...</source>
        <translation>Exportation des fichiers…</translation>
    </message>
    <message>
        <source>Their contents in the database are damaged:</source>
        <translation>Leur contenu dans la base de données est endommagé&#xa0;:</translation>
    </message>
    <message>
        <source>The database says: %1.</source>
        <translation>La base de données indique&#xa0;: %1.</translation>
    </message>
    <message>
        <source>Gathering file information</source>
        <translation>Collecte des informations sur les fichiers</translation>
    </message>
    <message>
        <source>The tags for the folders could not be made, so nothing was added.</source>
        <translation>Les étiquettes des dossiers n’ont pas pu être créées&#x202f;; rien n’a donc été ajouté.</translation>
    </message>
    <message>
        <source>Error adding files</source>
        <translation>Erreur lors de l’ajout de fichiers</translation>
    </message>
    <message>
        <source>Creating hyperlinks into database...</source>
        <translation>Ajout des hyperliens à la base de données…</translation>
    </message>
    <message>
        <source>A database-related duplicate management error occurred while preparing to add files</source>
        <translation>Une erreur de base de données s’est produite dans la gestion des doublons pendant la préparation de l’ajout</translation>
    </message>
    <message>
        <source>Files left out</source>
        <translation>Fichiers laissés de côté</translation>
    </message>
    <message>
        <source>Linking to files...</source>
        <translation>Création des liens vers les fichiers…</translation>
    </message>
    <message>
        <source>Copying files into database...</source>
        <translation>Copie des fichiers dans la base de données…</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportation</translation>
    </message>
    <message>
        <source>The database is in use by another program.</source>
        <translation>La base de données est utilisée par un autre programme.</translation>
    </message>
    <message>
        <source>The export was canceled, and nothing was written to &quot;%1&quot;.</source>
        <translation>L’exportation a été annulée, et rien n’a été écrit dans «&#x202f;%1&#x202f;».</translation>
    </message>
    <message>
        <source>The file could not get its name.</source>
        <translation>Le fichier n’a pas pu recevoir son nom.</translation>
    </message>
    <message>
        <source>Nothing was exported to &quot;%1&quot;.

The reason: %2</source>
        <translation>Rien n’a été exporté vers «&#x202f;%1&#x202f;».

La raison&#xa0;: %2</translation>
    </message>
    <message>
        <source>Exporting</source>
        <translation>Exportation</translation>
    </message>
    <message>
        <source>%1 (only its beginning)</source>
        <translation>%1 (le début seulement)</translation>
    </message>
    <message>
        <source>Extracting Files...</source>
        <translation>Extraction des fichiers…</translation>
    </message>
    <message>
        <source>Only its beginning was written:
%1</source>
        <translation>Seul le début a été écrit&#xa0;:
%1</translation>
    </message>
    <message>
        <source>An error has occurred while extracting a file. This may be a memory-related problem, so closing any applications which consume large amounts of memory should fix it.</source>
        <translation>Une erreur s’est produite lors de l’extraction d’un fichier. La mémoire est peut-être insuffisante&#x202f;; fermer les applications qui en consomment beaucoup devrait y remédier.</translation>
    </message>
    <message>
        <source>The system says: %1</source>
        <translation>Le système indique&#xa0;: %1</translation>
    </message>
    <message>
        <source>Not written:
%1</source>
        <translation>Non écrit&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Error extracting file</source>
        <translation>Erreur d’extraction</translation>
    </message>
    <message>
        <source>This file could not be read, or could not get its name in the folder, and was not extracted:

%1</source>
        <translation>Ce fichier n’a pas pu être lu, ou recevoir son nom dans le dossier, et n’a pas été extrait&#xa0;:

%1</translation>
    </message>
    <message>
        <source>These files could not be read, or could not get their names in the folder, and were not extracted:

%1</source>
        <translation>Ces fichiers n’ont pas pu être lus, ou recevoir leur nom dans le dossier, et n’ont pas été extraits&#xa0;:

%1</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importation</translation>
    </message>
    <message>
        <source>Deleting files...</source>
        <translation>Suppression des fichiers…</translation>
    </message>
    <message>
        <source>Extracting files...</source>
        <translation>Extraction des fichiers…</translation>
    </message>
    <message>
        <source>Extracting to temporary file...</source>
        <translation>Extraction dans un fichier temporaire…</translation>
    </message>
    <message>
        <source>Exporting...</source>
        <translation>Exportation…</translation>
    </message>
    <message>
        <source>Importing...</source>
        <translation>Importation…</translation>
    </message>
    <message>
        <source>Transferring files into database...</source>
        <translation>Transfert des fichiers dans la base de données…</translation>
    </message>
    <message>
        <source>Remaking thumbnails...</source>
        <translation>Régénération des vignettes…</translation>
    </message>
    <message>
        <source>This picture could not be read and keeps its thumbnail:

%1</source>
        <translation>Cette image n’a pas pu être lue et garde sa vignette&#xa0;:

%1</translation>
    </message>
    <message>
        <source>Thumbnails not remade</source>
        <translation>Vignettes non régénérées</translation>
    </message>
    <message>
        <source>This file could not be read, or changed meanwhile, and remains external:

%1</source>
        <translation>Ce fichier n’a pas pu être lu, ou a changé entre-temps, et reste externe&#xa0;:

%1</translation>
    </message>
    <message>
        <source>These files could not be read, or changed meanwhile, and remain external:

%1</source>
        <translation>Ces fichiers n’ont pas pu être lus, ou ont changé entre-temps, et restent externes&#xa0;:

%1</translation>
    </message>
    <message>
        <source>Error transferring files</source>
        <translation>Erreur lors du transfert des fichiers</translation>
    </message>
    <message>
        <source>Adding %1</source>
        <translation>Ajout de %1</translation>
    </message>
    <message numerus="yes">
        <source>%Ln pictures could not be read and keep their thumbnails:

%1</source>
        <translation>
            <numerusform>%Ln image n’a pas pu être lue et garde sa vignette&#xa0;:

%1</numerusform>
            <numerusform>%Ln images n’ont pas pu être lues et gardent leurs vignettes&#xa0;:

%1</numerusform>
        </translation>
    </message>
    <message>
        <source>Transferring %1</source>
        <translation>Transfert de %1</translation>
    </message>
    <message>
        <source>The tag &quot;%1&quot;</source>
        <translation>L’étiquette «&#x202f;%1&#x202f;»</translation>
    </message>
    <message>
        <source>The tag group &quot;%1&quot;</source>
        <translation>Le groupe d’étiquettes «&#x202f;%1&#x202f;»</translation>
    </message>
    <message>
        <source>Their pages in the database file are damaged:</source>
        <translation>Leurs pages dans le fichier de base de données sont endommagées&#xa0;:</translation>
    </message>
    <message>
        <source>Changing the tags of files...</source>
        <translation>Modification des étiquettes des fichiers…</translation>
    </message>
    <message>
        <source>The disk with &quot;%1&quot; does not answer, so nothing was added.</source>
        <translation>Le disque contenant «&#x202f;%1&#x202f;» ne répond pas, rien n’a donc été ajouté.</translation>
    </message>
    <message>
        <source>Merging tags...</source>
        <translation>Fusion des étiquettes…</translation>
    </message>
    <message>
        <source>The tags have been removed meanwhile.</source>
        <translation>Les étiquettes ont été supprimées entre-temps.</translation>
    </message>
    <message>
        <source>Merge Tags</source>
        <translation>Fusionner les étiquettes</translation>
    </message>
</context>
<context>
    <name>FileRenamer</name>
    <message>
        <source>The name of a file must not contain &quot;/&quot;, nor be &quot;.&quot; or &quot;..&quot;.</source>
        <translation>Le nom d’un fichier ne doit pas contenir «&#x202f;/&#x202f;», ni être «&#x202f;.&#x202f;» ou «&#x202f;..&#x202f;».</translation>
    </message>
    <message>
        <source>The file could not be renamed.</source>
        <translation>Le fichier n’a pas pu être renommé.</translation>
    </message>
    <message>
        <source>Rename File</source>
        <translation>Renommer le fichier</translation>
    </message>
    <message>
        <source>There is already a file with this name.</source>
        <translation>Il y a déjà un fichier de ce nom.</translation>
    </message>
    <message>
        <source>The other file is in the database too and cannot be replaced.</source>
        <translation>L’autre fichier est aussi dans la base de données et ne peut pas être remplacé.</translation>
    </message>
</context>
<context>
    <name>FileSearch</name>
    <message>
        <source>Find Files</source>
        <translation>Rechercher des fichiers</translation>
    </message>
</context>
<context>
    <name>FileSorting</name>
    <message>
        <source>Sort By</source>
        <translation>Trier par</translation>
    </message>
    <message>
        <source>As Added</source>
        <translation>Ordre d’ajout</translation>
    </message>
    <message>
        <source>Ascending</source>
        <translation>Croissant</translation>
    </message>
    <message>
        <source>Descending</source>
        <translation>Décroissant</translation>
    </message>
</context>
<context>
    <name>FileTagging</name>
    <message>
        <source>Add Tags:</source>
        <translation>Ajouter des étiquettes&#xa0;:</translation>
    </message>
    <message>
        <source>Add Tags...</source>
        <translation>Ajouter des étiquettes…</translation>
    </message>
    <message>
        <source>Favourite Tags</source>
        <translation>Étiquettes favorites</translation>
    </message>
    <message>
        <source>&amp;Pin</source>
        <translation>É&amp;pingler</translation>
    </message>
    <message>
        <source>Return tags and goes on to the next file (Alt+P)</source>
        <translation>Entrée pose les étiquettes et passe au fichier suivant (Alt+P)</translation>
    </message>
    <message>
        <source>Add Tags (%1)</source>
        <translation>Ajouter des étiquettes (%1)</translation>
    </message>
    <message>
        <source>No tag</source>
        <translation>Aucune étiquette</translation>
    </message>
</context>
<context>
    <name>FileTagsDialog</name>
    <message>
        <source>Tags</source>
        <translation>Étiquettes</translation>
    </message>
    <message>
        <source>There are no tags to choose from.</source>
        <translation>Il n’y a aucune étiquette à choisir.</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tag from this file</source>
        <translation>Cochez ou décochez la case pour attribuer l’étiquette suivante à ce fichier ou la lui retirer</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tag from these files</source>
        <translation>Cochez ou décochez la case pour attribuer l’étiquette suivante à ces fichiers ou la leur retirer</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tags from this file</source>
        <translation>Cochez ou décochez les cases pour attribuer les étiquettes suivantes à ce fichier ou les lui retirer</translation>
    </message>
    <message>
        <source>Check or uncheck boxes to link or unlink the following tags from these files</source>
        <translation>Cochez ou décochez les cases pour attribuer les étiquettes suivantes à ces fichiers ou les leur retirer</translation>
    </message>
    <message numerus="yes">
        <source>On %1 of %Ln files</source>
        <translation>
            <numerusform>Sur %1 de %Ln fichier</numerusform>
            <numerusform>Sur %1 des %Ln fichiers</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FileViews</name>
    <message>
        <source>Files as thumbnails</source>
        <translation>Fichiers en vignettes</translation>
    </message>
    <message>
        <source>Files as a table</source>
        <translation>Fichiers en tableau</translation>
    </message>
</context>
<context>
    <name>FolderExtraction</name>
    <message>
        <source>Comparing with the files in the folder...</source>
        <translation>Comparaison avec les fichiers du dossier…</translation>
    </message>
</context>
<context>
    <name>GroupImporter</name>
    <message>
        <source>Tag groups without a name: %1</source>
        <translation>Groupes d’étiquettes sans nom&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>HelpWindow</name>
    <message>
        <source>Quick Start Guide</source>
        <translation>Prise en main</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuel</translation>
    </message>
</context>
<context>
    <name>HyperlinkCheck</name>
    <message>
        <source>Hyperlink must not be empty.</source>
        <translation>L’hyperlien ne doit pas être vide.</translation>
    </message>
    <message>
        <source>Hyperlinks is file on the local file system</source>
        <translation>L’hyperlien est un fichier du système de fichiers local</translation>
    </message>
    <message>
        <source>The address has %1 signs. At most %2 can be kept.</source>
        <translation>L’adresse compte %1 caractères. Au plus %2 peuvent être conservés.</translation>
    </message>
    <message>
        <source>The address holds control signs, which no address has.</source>
        <translation>L’adresse contient des caractères de contrôle, ce qu’aucune adresse ne comporte.</translation>
    </message>
    <message>
        <source>This is not a valid address: %1.</source>
        <translation>Ce n’est pas une adresse valide&#xa0;: %1.</translation>
    </message>
    <message>
        <source>Longer than %1 signs: %2</source>
        <translation>De plus de %1 caractères&#xa0;: %2</translation>
    </message>
    <message>
        <source>With control signs: %1</source>
        <translation>Avec caractères de contrôle&#xa0;: %1</translation>
    </message>
    <message>
        <source>Of files that are not there: %1</source>
        <translation>De fichiers inexistants&#xa0;: %1</translation>
    </message>
    <message>
        <source>Not valid: %1</source>
        <translation>Non valides&#xa0;: %1</translation>
    </message>
    <message>
        <source>One hyperlink was not added:</source>
        <translation>Un hyperlien n’a pas été ajouté&#xa0;:</translation>
    </message>
    <message numerus="yes">
        <source>%Ln hyperlinks were not added:</source>
        <translation>
            <numerusform>%Ln hyperlien n’a pas été ajouté&#xa0;:</numerusform>
            <numerusform>%Ln hyperliens n’ont pas été ajoutés&#xa0;:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ImportReport</name>
    <message>
        <source>Imported from &quot;%1&quot;:</source>
        <translation>Importé de «&#x202f;%1&#x202f;»&#xa0;:</translation>
    </message>
    <message>
        <source>New files: %1</source>
        <translation>Nouveaux fichiers&#xa0;: %1</translation>
    </message>
    <message>
        <source>Files that were here already: %1</source>
        <translation>Fichiers déjà présents&#xa0;: %1</translation>
    </message>
    <message>
        <source>New tags: %1</source>
        <translation>Nouvelles étiquettes&#xa0;: %1</translation>
    </message>
    <message>
        <source>New links between tags and files: %1</source>
        <translation>Nouveaux liens entre étiquettes et fichiers&#xa0;: %1</translation>
    </message>
    <message>
        <source>New tag groups: %1</source>
        <translation>Nouveaux groupes d’étiquettes&#xa0;: %1</translation>
    </message>
    <message>
        <source>New browsing nodes: %1</source>
        <translation>Nouveaux nœuds de navigation&#xa0;: %1</translation>
    </message>
    <message>
        <source>New tag relationships: %1</source>
        <translation>Nouvelles relations d’étiquettes&#xa0;: %1</translation>
    </message>
    <message>
        <source>Changed descriptions: %1</source>
        <translation>Descriptions modifiées&#xa0;: %1</translation>
    </message>
    <message>
        <source>Not imported:</source>
        <translation>Non importés&#xa0;:</translation>
    </message>
</context>
<context>
    <name>ImportSource</name>
    <message>
        <source>The file is missing.</source>
        <translation>Le fichier est introuvable.</translation>
    </message>
    <message>
        <source>This is the open database itself.</source>
        <translation>C’est la base de données ouverte elle-même.</translation>
    </message>
    <message>
        <source>The file cannot be opened: %1</source>
        <translation>Le fichier ne peut pas être ouvert&#xa0;: %1</translation>
    </message>
    <message>
        <source>It holds parts that Vorna did not make, such as views or triggers.</source>
        <translation>Elle contient des éléments que Vorna n’a pas créés, comme des vues ou des déclencheurs.</translation>
    </message>
    <message>
        <source>It is no Vorna database.</source>
        <translation>Ce n’est pas une base de données de Vorna.</translation>
    </message>
    <message>
        <source>Another program is writing to it. Please try again.</source>
        <translation>Un autre programme y écrit. Veuillez réessayer.</translation>
    </message>
    <message>
        <source>A change to it was broken off. Open it once, and it is put in order.</source>
        <translation>Une modification y a été interrompue. Ouvrez-la une fois pour la remettre en ordre.</translation>
    </message>
    <message>
        <source>It cannot be read as a database: %1</source>
        <translation>Le fichier ne peut pas être lu comme une base de données&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>ImportStatements</name>
    <message>
        <source>There are no free ids in its table &quot;%1&quot;.</source>
        <translation>Il n’y a plus de numéro libre dans sa table «&#x202f;%1&#x202f;».</translation>
    </message>
</context>
<context>
    <name>LeftOutFiles</name>
    <message>
        <source>1 file has a name that cannot be read:</source>
        <translation>1 fichier a un nom illisible&#xa0;:</translation>
    </message>
    <message>
        <source>Files left out because the names of their folders cannot be read: %1</source>
        <translation>Fichiers laissés de côté parce que les noms de leurs dossiers sont illisibles&#xa0;: %1</translation>
    </message>
    <message>
        <source>1 file or folder could not be read:</source>
        <translation>1 fichier ou dossier n’a pas pu être lu&#xa0;:</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files have names that cannot be read:</source>
        <translation>
            <numerusform>%Ln fichier a un nom illisible&#xa0;:</numerusform>
            <numerusform>%Ln fichiers ont des noms illisibles&#xa0;:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln files or folders could not be read:</source>
        <translation>
            <numerusform>%Ln fichier ou dossier n’a pas pu être lu&#xa0;:</numerusform>
            <numerusform>%Ln fichiers ou dossiers n’ont pas pu être lus&#xa0;:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LoadingNotice</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Loading &quot;%1&quot;...</source>
        <translation>Chargement de «&#x202f;%1&#x202f;»…</translation>
    </message>
</context>
<context>
    <name>MainFilesView</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message numerus="yes">
        <source>%1 selected</source>
        <translation>
            <numerusform>%1 sélectionné</numerusform>
            <numerusform>%1 sélectionnés</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 fichier</translation>
    </message>
    <message>
        <source>No database is open.
Open one or make a new one in the Database menu.</source>
        <translation>Aucune base de données n’est ouverte.
Ouvrez-en une ou créez-en une dans le menu «&#x202f;Base de données&#x202f;».</translation>
    </message>
    <message>
        <source>Choose a browsing node or tags to see their files.
Nothing can be changed: this database is read-only.</source>
        <translation>Choisissez un nœud de navigation ou des étiquettes pour voir leurs fichiers.
Rien ne peut être modifié&#xa0;: cette base de données est en lecture seule.</translation>
    </message>
    <message>
        <source>Choose a browsing node or tags to see their files.
Drop files or folders here to add them.</source>
        <translation>Choisissez un nœud de navigation ou des étiquettes pour voir leurs fichiers.
Déposez ici des fichiers ou des dossiers pour les ajouter.</translation>
    </message>
    <message>
        <source>No file matches the search.</source>
        <translation>Aucun fichier ne correspond à la recherche.</translation>
    </message>
    <message>
        <source>No files here.</source>
        <translation>Aucun fichier ici.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln fichier</numerusform>
            <numerusform>%Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>This is the last file.</source>
        <translation>C’est le dernier fichier.</translation>
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
        <translation>&amp;Base de données</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>Étiquette</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>Nœud</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Affichage</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Édition</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Tag Filter</source>
        <translation>Filtre d’étiquettes</translation>
    </message>
    <message>
        <source>Tag tools</source>
        <translation>Outils d’étiquettes</translation>
    </message>
    <message>
        <source>File tools</source>
        <translation>Outils de fichiers</translation>
    </message>
    <message>
        <source>View-mode</source>
        <translation>Mode d’affichage</translation>
    </message>
    <message>
        <source>Search Files</source>
        <translation>Rechercher des fichiers</translation>
    </message>
    <message>
        <source>Link Tags to Files</source>
        <translation>Attribuer les étiquettes aux fichiers</translation>
    </message>
    <message>
        <source>File name, description or ID code</source>
        <translation>Nom de fichier, description ou code ID</translation>
    </message>
    <message>
        <source>Search Files - Name, Description, ID Code</source>
        <translation>Rechercher des fichiers – nom, description, code ID</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Edit Mode</source>
        <translation>Mode d’édition</translation>
    </message>
</context>
<context>
    <name>MainViewController</name>
    <message>
        <source>Error opening file</source>
        <translation>Erreur à l’ouverture du fichier</translation>
    </message>
    <message>
        <source>The file could not be copied out of the database into the folder for temporary files, %1. It may be full or write-protected.</source>
        <translation>Le fichier n’a pas pu être copié de la base de données dans le dossier des fichiers temporaires, %1. Celui-ci est peut-être plein ou protégé en écriture.</translation>
    </message>
    <message>
        <source>This file would start a program, which Vorna does not do out of a database. Extract it if you trust it, and start it from there.</source>
        <translation>Ce fichier lancerait un programme, ce que Vorna ne fait pas depuis une base de données. Si vous lui faites confiance, extrayez-le et lancez-le de là.</translation>
    </message>
    <message>
        <source>Vorna is unable to open this file. There may not be any application associated with the file type.</source>
        <translation>Vorna ne peut pas ouvrir ce fichier. Aucune application n’est peut-être associée à ce type de fichier.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Failed to Open Database</source>
        <translation>La base de données n’a pas pu être ouverte</translation>
    </message>
    <message>
        <source>The selected database could not be opened successfully.</source>
        <translation>La base de données choisie n’a pas pu être ouverte.</translation>
    </message>
    <message>
        <source>Open Database</source>
        <translation>Ouvrir une base de données</translation>
    </message>
    <message>
        <source>Database Info</source>
        <translation>Informations sur la base</translation>
    </message>
    <message>
        <source>Version of Vorna used to create the currently open database: %1
Database permissions: %2</source>
        <translation>Version de Vorna utilisée pour créer la base de données ouverte&#xa0;: %1
Droits de la base de données&#xa0;: %2</translation>
    </message>
    <message>
        <source>read-only</source>
        <translation>lecture seule</translation>
    </message>
    <message>
        <source>writable</source>
        <translation>accessible en écriture</translation>
    </message>
    <message>
        <source>Nameplate</source>
        <translation>À propos de Vorna</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Tag Group Name Conflict</source>
        <translation>Conflit de nom de groupe</translation>
    </message>
    <message>
        <source>A tag group with this name already exists.</source>
        <translation>Un groupe d’étiquettes de ce nom existe déjà.</translation>
    </message>
    <message>
        <source>Tag already exists</source>
        <translation>L’étiquette existe déjà</translation>
    </message>
    <message>
        <source>There is already a tag with this name.</source>
        <translation>Il y a déjà une étiquette de ce nom.</translation>
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
        <translation>Fusionner les étiquettes</translation>
    </message>
    <message>
        <source>Which of the tags stays?</source>
        <translation>Laquelle des étiquettes reste&#x202f;?</translation>
    </message>
    <message>
        <source>Merge</source>
        <translation>Fusionner</translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln fichier</numerusform>
            <numerusform>%Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>the name of a tag and its files</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Tags that go: %1. Their links to files: %2, their nodes: %3, their tag relationships: %4, and their places in groups go to the tag that stays. What it has already, and what would stand below itself, falls away. Edit &gt; Undo takes all of it back.</source>
        <translation>Étiquettes qui disparaissent&#xa0;: %1. Leurs liens vers des fichiers&#xa0;: %2, leurs nœuds&#xa0;: %3, leurs relations&#xa0;: %4 et leurs places dans les groupes passent à l’étiquette qui reste. Ce qu’elle a déjà, et ce qui se trouverait sous soi-même, disparaît. Édition &gt; Annuler rétablit le tout.</translation>
    </message>
</context>
<context>
    <name>MetaInfoDock</name>
    <message>
        <source>Link to a file</source>
        <translation>Lien vers un fichier</translation>
    </message>
    <message>
        <source>Inside the database</source>
        <translation>Dans la base de données</translation>
    </message>
    <message>
        <source>Hyperlink</source>
        <translation>Hyperlien</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 octet</translation>
    </message>
    <message numerus="yes">
        <source>%1 bytes</source>
        <translation>
            <numerusform>%1 octet</numerusform>
            <numerusform>%1 octets</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Metadata</source>
        <translation>Métadonnées</translation>
    </message>
    <message>
        <source>Tags:</source>
        <translation>Étiquettes&#xa0;:</translation>
    </message>
    <message>
        <source>Description:</source>
        <translation>Description&#xa0;:</translation>
    </message>
    <message>
        <source>Kept as:</source>
        <translation>Conservé comme&#xa0;:</translation>
    </message>
    <message>
        <source>Size:</source>
        <translation>Taille&#xa0;:</translation>
    </message>
    <message>
        <source>Modified:</source>
        <translation>Modifié&#xa0;:</translation>
    </message>
    <message>
        <source>Added:</source>
        <translation>Ajouté&#xa0;:</translation>
    </message>
    <message>
        <source>ID code:</source>
        <translation>Code ID&#xa0;:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>aucune</translation>
    </message>
    <message>
        <source>No file selected</source>
        <translation>Aucun fichier sélectionné</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files selected</source>
        <translation>
            <numerusform>%Ln fichier sélectionné</numerusform>
            <numerusform>%Ln fichiers sélectionnés</numerusform>
        </translation>
    </message>
    <message>
        <source>none in common</source>
        <translation>aucune en commun</translation>
    </message>
</context>
<context>
    <name>MetadataMerger</name>
    <message>
        <source>Descriptions that would become too long: %1</source>
        <translation>Descriptions qui deviendraient trop longues&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>MiscOperationThread</name>
    <message>
        <source>File Extraction</source>
        <translation>Extraction de fichiers</translation>
    </message>
    <message>
        <source>Use New Name</source>
        <translation>Utiliser un nouveau nom</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>There is already a file named %1 in folder %2. Do you instead want to rename the file to %3?</source>
        <translation>Le dossier %2 contient déjà un fichier nommé %1. Voulez-vous plutôt renommer le fichier en %3&#x202f;?</translation>
    </message>
    <message>
        <source>There is a different file already in the folder %1 with the same name as file &apos;%2&apos;. Do you want to replace it or create a new file named &apos;%3&apos;?</source>
        <translation>Le dossier %1 contient déjà un autre fichier du même nom que «&#x202f;%2&#x202f;». Voulez-vous le remplacer ou créer un nouveau fichier nommé «&#x202f;%3&#x202f;»&#x202f;?</translation>
    </message>
</context>
<context>
    <name>MultipleFileConflictHandler</name>
    <message>
        <source>File Extraction Conflicts</source>
        <translation>Conflits d’extraction</translation>
    </message>
    <message>
        <source>Set Replace All</source>
        <translation>Tout remplacer</translation>
    </message>
    <message>
        <source>Set Use New Names</source>
        <translation>Utiliser de nouveaux noms</translation>
    </message>
    <message>
        <source>There are already different files in folder &apos;%1&apos; with the same names as the following database files.
Please choose how these files should be extracted.</source>
        <translation>Le dossier «&#x202f;%1&#x202f;» contient déjà d’autres fichiers portant les mêmes noms que les fichiers suivants de la base de données.
Veuillez choisir comment ces fichiers doivent être extraits.</translation>
    </message>
</context>
<context>
    <name>NameInput</name>
    <message>
        <source>Group name</source>
        <translation>Nom du groupe</translation>
    </message>
    <message>
        <source>Name of new group:</source>
        <translation>Nom du nouveau groupe&#xa0;:</translation>
    </message>
</context>
<context>
    <name>NameMatchModel</name>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Last Modified</source>
        <translation>Dernière modification</translation>
    </message>
    <message>
        <source>Database file: %1</source>
        <translation>Fichier de la base&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>NamesLine</name>
    <message>
        <source>Names of tags, parted by commas</source>
        <translation>Noms d’étiquettes, séparés par des virgules</translation>
    </message>
    <message>
        <source>Close (Esc)</source>
        <translation>Fermer (Échap)</translation>
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
        <translation>Image précédente</translation>
    </message>
    <message>
        <source>Next image</source>
        <translation>Image suivante</translation>
    </message>
    <message>
        <source>Rotate anti-clockwise</source>
        <translation>Tourner vers la gauche</translation>
    </message>
    <message>
        <source>Rotate clockwise</source>
        <translation>Tourner vers la droite</translation>
    </message>
    <message>
        <source>Fullscreen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>Start slideshow</source>
        <translation>Lancer le diaporama</translation>
    </message>
    <message>
        <source>Save changes</source>
        <translation>Enregistrer les modifications</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Zoom avant</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Zoom arrière</translation>
    </message>
    <message>
        <source>Original size</source>
        <translation>Taille d’origine</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Ajuster</translation>
    </message>
</context>
<context>
    <name>NodeImporter</name>
    <message>
        <source>Browsing nodes with values that are no numbers: %1</source>
        <translation>Nœuds de navigation dont des valeurs ne sont pas des nombres&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>NodeTyping</name>
    <message>
        <source>Add nodes:</source>
        <translation>Ajouter des nœuds&#xa0;:</translation>
    </message>
    <message>
        <source>Add Node...</source>
        <translation>Ajouter un nœud…</translation>
    </message>
    <message>
        <source>Add Node Below...</source>
        <translation>Ajouter un nœud au-dessous…</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Monter</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Descendre</translation>
    </message>
    <message>
        <source>Below %1:</source>
        <translation>Sous %1&#xa0;:</translation>
    </message>
</context>
<context>
    <name>OpeningProgress</name>
    <message>
        <source>Opening database... %1 %</source>
        <translation>Ouverture de la base de données… %1&#x202f;%</translation>
    </message>
</context>
<context>
    <name>OperationReport</name>
    <message>
        <source>Files added: %1 of %2.</source>
        <translation>Fichiers ajoutés&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Files linked: %1 of %2.</source>
        <translation>Fichiers liés&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Files deleted: %1 of %2.</source>
        <translation>Fichiers supprimés&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Files extracted: %1 of %2.</source>
        <translation>Fichiers extraits&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Files located: %1 of %2.</source>
        <translation>Fichiers localisés&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Files transferred: %1 of %2.</source>
        <translation>Fichiers transférés&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Thumbnails remade: %1 of %2.</source>
        <translation>Vignettes régénérées&#xa0;: %1 sur %2.</translation>
    </message>
    <message>
        <source>Files whose tags were changed: %1 of %2.</source>
        <translation>Fichiers dont les étiquettes ont été modifiées&#xa0;: %1 sur %2.</translation>
    </message>
</context>
<context>
    <name>PopupMessager</name>
    <message>
        <source>Tag already exists</source>
        <translation>L’étiquette existe déjà</translation>
    </message>
    <message>
        <source>There is already a tag with this name.</source>
        <translation>Il y a déjà une étiquette de ce nom.</translation>
    </message>
</context>
<context>
    <name>PostgresDBManager</name>
    <message>
        <source>Browsing tree error</source>
        <translation>Erreur d’arbre de navigation</translation>
    </message>
    <message>
        <source>Selected browsing tree no longer exists.
Selected default browsing tree.</source>
        <translation>L’arbre de navigation choisi n’existe plus.
L’arbre par défaut a été choisi.</translation>
    </message>
</context>
<context>
    <name>PreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>Préférences</translation>
    </message>
    <message>
        <source>Adding Files</source>
        <translation>Ajout de fichiers</translation>
    </message>
    <message>
        <source>Duplicate Management For Adding Files</source>
        <translation>Gestion des doublons à l’ajout de fichiers</translation>
    </message>
    <message>
        <source>Enable duplicate management</source>
        <translation>Activer la gestion des doublons</translation>
    </message>
    <message>
        <source>List files which were not added because they were duplicates</source>
        <translation>Énumérer les fichiers non ajoutés parce qu’ils sont des doublons</translation>
    </message>
    <message>
        <source>Check for and present file name duplicates</source>
        <translation>Rechercher et présenter les doublons de nom</translation>
    </message>
    <message>
        <source>Automatic Tag Creation</source>
        <translation>Création automatique d’étiquettes</translation>
    </message>
    <message>
        <source>Enable auto-tag-creation from folders</source>
        <translation>Créer automatiquement des étiquettes à partir des dossiers</translation>
    </message>
    <message>
        <source>Automatically create Browsing Nodes</source>
        <translation>Créer automatiquement les nœuds de navigation</translation>
    </message>
    <message>
        <source>Limit auto-tagging to folder level:</source>
        <translation>Limiter l’étiquetage au niveau de dossier&#xa0;:</translation>
    </message>
    <message>
        <source>External Files</source>
        <translation>Fichiers externes</translation>
    </message>
    <message>
        <source>Advise when external file details are updated</source>
        <translation>Signaler la mise à jour des informations sur les fichiers externes</translation>
    </message>
    <message>
        <source>Browsing</source>
        <translation>Navigation</translation>
    </message>
    <message>
        <source>Browsing Tree</source>
        <translation>Arbre de navigation</translation>
    </message>
    <message>
        <source>Alphabetical Order</source>
        <translation>Ordre alphabétique</translation>
    </message>
    <message>
        <source>Manual Order</source>
        <translation>Ordre manuel</translation>
    </message>
    <message>
        <source>Ask for node to be added above or below drop point</source>
        <translation>Demander si le nœud s’ajoute au-dessus ou au-dessous du point de dépôt</translation>
    </message>
    <message>
        <source>Note: Nodes can be inserted above the level of the drop-point node by holding the Alt key when dragging.</source>
        <translation>Remarque&#xa0;: en maintenant la touche Alt pendant le glissement, les nœuds s’insèrent au-dessus du niveau du point de dépôt.</translation>
    </message>
    <message>
        <source>Auto Linking</source>
        <translation>Liaison automatique</translation>
    </message>
    <message>
        <source>Auto link files continuously</source>
        <translation>Lier les fichiers en continu</translation>
    </message>
    <message>
        <source>Auto link new files only when the corresponding browsing node is selected</source>
        <translation>Lier les nouveaux fichiers seulement quand le nœud correspondant est choisi</translation>
    </message>
    <message>
        <source>Check for new files in all auto link folders each time Vorna is launched.</source>
        <translation>Rechercher les nouveaux fichiers dans tous les dossiers liés à chaque démarrage de Vorna.</translation>
    </message>
    <message>
        <source>Auto link files in the background and do not display any messages.</source>
        <translation>Lier les fichiers en arrière-plan sans afficher de message.</translation>
    </message>
    <message>
        <source>Misc</source>
        <translation>Divers</translation>
    </message>
    <message>
        <source>Number of thumbnails to cache:</source>
        <translation>Nombre de vignettes en mémoire&#xa0;:</translation>
    </message>
    <message>
        <source>Recent Files Timeout:</source>
        <translation>Durée des fichiers récents&#xa0;:</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>minutes</translation>
    </message>
    <message>
        <source>Image previewer</source>
        <translation>Aperçu des images</translation>
    </message>
    <message>
        <source>Auto-save rotated images</source>
        <translation>Enregistrer automatiquement les images tournées</translation>
    </message>
    <message>
        <source>Keep image window on top</source>
        <translation>Garder la fenêtre d’image au premier plan</translation>
    </message>
    <message>
        <source>Slideshow increment time:</source>
        <translation>Durée d’affichage du diaporama&#xa0;:</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>secondes</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Mises à jour</translation>
    </message>
    <message>
        <source>Check for updates</source>
        <translation>Rechercher les mises à jour</translation>
    </message>
    <message>
        <source>Download updates automatically</source>
        <translation>Télécharger automatiquement les mises à jour</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Tester</translation>
    </message>
    <message>
        <source>The preferences could not be stored.</source>
        <translation>Les préférences n’ont pas pu être enregistrées.</translation>
    </message>
    <message>
        <source>The update server is being asked.</source>
        <translation>Le serveur de mise à jour est interrogé.</translation>
    </message>
    <message>
        <source>Checked Connection</source>
        <translation>Connexion vérifiée</translation>
    </message>
    <message>
        <source>Update check succeeded.</source>
        <translation>La recherche de mises à jour a réussi.</translation>
    </message>
    <message>
        <source>The update server could not be reached.</source>
        <translation>Le serveur de mise à jour n’a pas pu être joint.</translation>
    </message>
</context>
<context>
    <name>PreviewBox</name>
    <message>
        <source>%1 - %2 of %3</source>
        <translation>%1 – %2 sur %3</translation>
    </message>
    <message>
        <source>The loading of this picture was canceled.</source>
        <translation>Le chargement de cette image a été annulé.</translation>
    </message>
    <message>
        <source>The database is busy. The picture comes as soon as it is free.</source>
        <translation>La base de données est occupée. L’image viendra dès qu’elle sera libre.</translation>
    </message>
    <message>
        <source>This picture cannot be shown.</source>
        <translation>Cette image ne peut pas être affichée.</translation>
    </message>
    <message>
        <source>File No Longer Present</source>
        <translation>Fichier introuvable</translation>
    </message>
    <message>
        <source>This image could not be opened because the file no longer exists in its original path. It may have been moved, renamed or deleted.</source>
        <translation>Cette image n’a pas pu être ouverte, car le fichier n’est plus à son emplacement d’origine. Il a peut-être été déplacé, renommé ou supprimé.</translation>
    </message>
    <message>
        <source>Error previewing image</source>
        <translation>Erreur d’aperçu de l’image</translation>
    </message>
    <message>
        <source>An error has occurred while retrieving this externally stored image.</source>
        <translation>Une erreur s’est produite lors de la lecture de cette image externe.</translation>
    </message>
    <message>
        <source>An error has occurred while retrieving this image.</source>
        <translation>Une erreur s’est produite lors de la lecture de cette image.</translation>
    </message>
    <message>
        <source>Error saving image</source>
        <translation>Erreur d’enregistrement de l’image</translation>
    </message>
    <message>
        <source>The turned picture could not be saved.</source>
        <translation>L’image tournée n’a pas pu être enregistrée.</translation>
    </message>
</context>
<context>
    <name>ProgressDialog</name>
    <message>
        <source>File Location</source>
        <translation>Localisation de fichiers</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Progression</translation>
    </message>
    <message>
        <source>Locating files...</source>
        <translation>Localisation des fichiers…</translation>
    </message>
</context>
<context>
    <name>PropertiesDialog</name>
    <message>
        <source>File Properties</source>
        <translation>Propriétés du fichier</translation>
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
        <translation>Nom&#xa0;: %1
Description&#xa0;: %2
Ajouté&#xa0;: %3
Modifié&#xa0;: %4
Taille&#xa0;: %5
Chemin absolu&#xa0;: %6
Chemin relatif&#xa0;: %7
</translation>
    </message>
    <message>
        <source>1 byte</source>
        <translation>1 octet</translation>
    </message>
    <message numerus="yes">
        <source>%1 bytes</source>
        <translation>
            <numerusform>%1 octet</numerusform>
            <numerusform>%1 octets</numerusform>
        </translation>
    </message>
    <message>
        <source>internal</source>
        <translation>interne</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Opening database...</source>
        <translation>Ouverture de la base de données…</translation>
    </message>
</context>
<context>
    <name>RelationTreeViewDock</name>
    <message>
        <source>Tag Relationships</source>
        <translation>Relations d’étiquettes</translation>
    </message>
</context>
<context>
    <name>RelationTyping</name>
    <message>
        <source>Add tags:</source>
        <translation>Ajouter des étiquettes&#xa0;:</translation>
    </message>
    <message>
        <source>Add Tag...</source>
        <translation>Ajouter une étiquette…</translation>
    </message>
    <message>
        <source>Add Tag Below...</source>
        <translation>Ajouter une étiquette au-dessous…</translation>
    </message>
    <message>
        <source>Below %1:</source>
        <translation>Sous %1&#xa0;:</translation>
    </message>
</context>
<context>
    <name>RelationshipImporter</name>
    <message>
        <source>Tag relationships that are none: %1</source>
        <translation>Relations d’étiquettes qui n’en sont pas&#xa0;: %1</translation>
    </message>
    <message>
        <source>Tag relationships by which a tag would stand below itself: %1</source>
        <translation>Relations par lesquelles une étiquette se trouverait au-dessous d’elle-même&#xa0;: %1</translation>
    </message>
    <message>
        <source>Tag relationships beyond the first million: %1</source>
        <translation>Relations d’étiquettes au-delà du premier million&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>ReloadProgress</name>
    <message>
        <source>Reading the database again... %1 %</source>
        <translation>Relecture de la base de données… %1&#x202f;%</translation>
    </message>
</context>
<context>
    <name>RenamedFiles</name>
    <message>
        <source>There is already a file with this name.</source>
        <translation>Il existe déjà un fichier de ce nom.</translation>
    </message>
    <message>
        <source>The file could not be renamed.</source>
        <translation>Le fichier n’a pas pu être renommé.</translation>
    </message>
</context>
<context>
    <name>SQLiteDBManager</name>
    <message>
        <source>The database file does not exist.</source>
        <translation>Le fichier de base de données n’existe pas.</translation>
    </message>
    <message>
        <source>Database Permissions</source>
        <translation>Droits de la base de données</translation>
    </message>
    <message>
        <source>This database is not readable by this user.</source>
        <translation>Cet utilisateur ne peut pas lire cette base de données.</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
</context>
<context>
    <name>SQLiteImporter</name>
    <message>
        <source>Importing files...</source>
        <translation>Importation des fichiers…</translation>
    </message>
    <message>
        <source>Nothing was imported.</source>
        <translation>Rien n’a été importé.</translation>
    </message>
    <message>
        <source>It has no tables of these names, or others: %1.</source>
        <translation>Il y manque des tables de ces noms, ou elles sont différentes&#xa0;: %1.</translation>
    </message>
    <message>
        <source>Comparing files...</source>
        <translation>Comparaison des fichiers…</translation>
    </message>
    <message>
        <source>Importing tags...</source>
        <translation>Importation des étiquettes…</translation>
    </message>
    <message>
        <source>Merging descriptions...</source>
        <translation>Fusion des descriptions…</translation>
    </message>
    <message>
        <source>Linking tags...</source>
        <translation>Attribution des étiquettes…</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was not imported.

%2</source>
        <translation>«&#x202f;%1&#x202f;» n’a pas été importé.

%2</translation>
    </message>
    <message>
        <source>Error importing shell database </source>
        <translation>Erreur lors de l’importation de la coquille </translation>
    </message>
    <message>
        <source>Error importing files </source>
        <translation>Erreur lors de l’importation des fichiers </translation>
    </message>
    <message>
        <source>An unknown error occurred while importing shell database</source>
        <translation>Une erreur inconnue s’est produite lors de l’importation de la coquille</translation>
    </message>
    <message>
        <source>An unknown error occurred while adding files</source>
        <translation>Une erreur inconnue s’est produite lors de l’ajout de fichiers</translation>
    </message>
    <message>
        <source>A part of it, or of the open database, cannot be read, as the file is damaged.</source>
        <translation>Une partie de cette base de données, ou de celle qui est ouverte, ne peut pas être lue, car le fichier est endommagé.</translation>
    </message>
    <message>
        <source>There was an error when opening a connection to the database for the purpose of adding files.</source>
        <translation>Une erreur s’est produite à l’ouverture d’une connexion à la base de données dont des fichiers devaient être ajoutés.</translation>
    </message>
    <message>
        <source>Error opening connection to database</source>
        <translation>Erreur de connexion à la base de données</translation>
    </message>
</context>
<context>
    <name>ServerConnections</name>
    <message>
        <source>Failed to Connect to Database</source>
        <translation>Échec de la connexion à la base de données</translation>
    </message>
    <message>
        <source>Connection could not be made to the specified remote database.</source>
        <translation>La connexion à la base de données distante indiquée a échoué.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Connecting to %1 ...</source>
        <translation>Connexion à %1…</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Connexion</translation>
    </message>
</context>
<context>
    <name>ShellFilesModel</name>
    <message numerus="yes">
        <source>%1, %2 bytes</source>
        <translation>
            <numerusform>%1, %2 octet</numerusform>
            <numerusform>%1, %2 octets</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ShellImportNotification</name>
    <message>
        <source>Shell Import Notification</source>
        <translation>Importation d’une coquille</translation>
    </message>
    <message>
        <source>The metadata for the following files was not imported since a matching file was not found in the destination database.</source>
        <translation>Les métadonnées des fichiers suivants n’ont pas été importées, faute de fichier correspondant dans la base de données de destination.</translation>
    </message>
</context>
<context>
    <name>SourceFiles</name>
    <message>
        <source>Files with values that are no numbers: %1</source>
        <translation>Fichiers dont des valeurs ne sont pas des nombres&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>SpecialNodes</name>
    <message>
        <source>All files</source>
        <translation>Tous les fichiers</translation>
    </message>
    <message>
        <source>All files with tags</source>
        <translation>Tous les fichiers étiquetés</translation>
    </message>
    <message>
        <source>All files without tags</source>
        <translation>Tous les fichiers sans étiquette</translation>
    </message>
    <message>
        <source>All files with their contents in the database.</source>
        <translation>Tous les fichiers dont le contenu est dans la base de données.</translation>
    </message>
    <message>
        <source>All files residing in paths external to the database.</source>
        <translation>Tous les fichiers situés hors de la base de données.</translation>
    </message>
    <message>
        <source>All Hyperlinks</source>
        <translation>Tous les hyperliens</translation>
    </message>
    <message>
        <source>Recently added files</source>
        <translation>Fichiers ajoutés récemment</translation>
    </message>
    <message>
        <source>All Internal Files</source>
        <translation>Tous les fichiers internes</translation>
    </message>
    <message>
        <source>All External Files</source>
        <translation>Tous les fichiers externes</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>1 tag</source>
        <translation>1 étiquette</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags</source>
        <translation>
            <numerusform>%Ln étiquette</numerusform>
            <numerusform>%Ln étiquettes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 group</source>
        <translation>1 groupe</translation>
    </message>
    <message numerus="yes">
        <source>%Ln groups</source>
        <translation>
            <numerusform>%Ln groupe</numerusform>
            <numerusform>%Ln groupes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 node</source>
        <translation>1 nœud</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes</source>
        <translation>
            <numerusform>%Ln nœud</numerusform>
            <numerusform>%Ln nœuds</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tag relationship</source>
        <translation>1 relation d’étiquettes</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tag relationships</source>
        <translation>
            <numerusform>%Ln relation d’étiquettes</numerusform>
            <numerusform>%Ln relations d’étiquettes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 browsing tree</source>
        <translation>1 arbre de navigation</translation>
    </message>
    <message numerus="yes">
        <source>%Ln browsing trees</source>
        <translation>
            <numerusform>%Ln arbre de navigation</numerusform>
            <numerusform>%Ln arbres de navigation</numerusform>
        </translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln fichier</numerusform>
            <numerusform>%Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 changed by others</source>
        <translation>Modifié par d’autres&#xa0;: %1</translation>
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
        <translation>Arbre de navigation</translation>
    </message>
    <message>
        <source>Create new node</source>
        <translation>Nouveau nœud</translation>
    </message>
    <message>
        <source>Add above</source>
        <translation>Ajouter au-dessus</translation>
    </message>
    <message>
        <source>Add below</source>
        <translation>Ajouter au-dessous</translation>
    </message>
    <message>
        <source>Do you really want to delete a non-leaf node from this tree?</source>
        <translation>Voulez-vous vraiment supprimer de cet arbre un nœud qui en contient d’autres&#x202f;?</translation>
    </message>
    <message>
        <source>Do you really want to delete non-leaf nodes from this tree?</source>
        <translation>Voulez-vous vraiment supprimer de cet arbre des nœuds qui en contiennent d’autres&#x202f;?</translation>
    </message>
</context>
<context>
    <name>TRview</name>
    <message>
        <source>Tag Relationships</source>
        <translation>Relations d’étiquettes</translation>
    </message>
    <message>
        <source>Error creating tag relationship</source>
        <translation>Erreur lors de la création de la relation d’étiquettes</translation>
    </message>
    <message>
        <source>This is an illegal tag relationship.</source>
        <translation>Cette relation d’étiquettes n’est pas permise.</translation>
    </message>
    <message>
        <source>Do you really want to delete a non-leaf node from this tree?</source>
        <translation>Voulez-vous vraiment supprimer de cet arbre un nœud qui en contient d’autres&#x202f;?</translation>
    </message>
    <message>
        <source>Tag Relationship Operations</source>
        <translation>Opérations sur les relations d’étiquettes</translation>
    </message>
    <message>
        <source>Delete Relationship Subtree</source>
        <translation>Supprimer le sous-arbre de relations</translation>
    </message>
    <message>
        <source>Drag tags here. A tag then stands for all tags below it.</source>
        <translation>Faites glisser des étiquettes ici. Une étiquette vaut alors pour toutes celles qui sont au-dessous.</translation>
    </message>
</context>
<context>
    <name>TagDockActions</name>
    <message>
        <source>Assign Tag Groups</source>
        <translation>Attribuer des groupes d’étiquettes</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Export Tags</source>
        <translation>Exporter des étiquettes</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>Étiquettes</translation>
    </message>
    <message>
        <source>Add Tag Group</source>
        <translation>Ajouter un groupe d’étiquettes</translation>
    </message>
    <message>
        <source>Delete Current Group</source>
        <translation>Supprimer le groupe courant</translation>
    </message>
    <message>
        <source>New Tag</source>
        <translation>Nouvelle étiquette</translation>
    </message>
    <message>
        <source>All of the Tags</source>
        <translation>Toutes ces étiquettes</translation>
    </message>
    <message>
        <source>Show files having all of the selected tags (Tab)</source>
        <translation>Afficher les fichiers portant toutes les étiquettes sélectionnées (Tab)</translation>
    </message>
    <message>
        <source>Any of the Tags</source>
        <translation>Une de ces étiquettes</translation>
    </message>
    <message>
        <source>Show files having at least one of the selected tags (Ctrl+=)</source>
        <translation>Afficher les fichiers portant au moins une des étiquettes sélectionnées (Ctrl+=)</translation>
    </message>
    <message>
        <source>Merge Tags...</source>
        <translation>Fusionner les étiquettes…</translation>
    </message>
</context>
<context>
    <name>TagDockCommands</name>
    <message>
        <source>New Tag</source>
        <translation>Nouvelle étiquette</translation>
    </message>
    <message>
        <source>Tag name:</source>
        <translation>Nom de l’étiquette&#xa0;:</translation>
    </message>
    <message>
        <source>Tags In Use</source>
        <translation>Étiquettes utilisées</translation>
    </message>
    <message>
        <source>Some of the tags chosen for deletion are in use by being linked to files, nodes or tag relationships. Deletion of these tags will result in the deletion of all of these links and all relevant nodes and tag relationships.
Would you like to delete the tags that are in use?</source>
        <translation>Certaines des étiquettes à supprimer sont utilisées&#xa0;: elles sont liées à des fichiers, à des nœuds ou à des relations d’étiquettes. Leur suppression entraînera celle de tous ces liens ainsi que de tous les nœuds et relations d’étiquettes concernés.
Voulez-vous supprimer les étiquettes utilisées&#x202f;?</translation>
    </message>
</context>
<context>
    <name>TagExportDialog</name>
    <message>
        <source>Export Tags</source>
        <translation>Exporter des étiquettes</translation>
    </message>
    <message>
        <source>The selected tags are exported with the files that bear them.</source>
        <translation>Les étiquettes sélectionnées sont exportées avec les fichiers qui les portent.</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Base de données</translation>
    </message>
    <message>
        <source>Shell, a database without the contents of files</source>
        <translation>Coquille, une base sans le contenu des fichiers</translation>
    </message>
    <message>
        <source>CSV File, a table of the files</source>
        <translation>Fichier CSV, un tableau des fichiers</translation>
    </message>
</context>
<context>
    <name>TagGroupBar</name>
    <message>
        <source>Tag Groups</source>
        <translation>Groupes d’étiquettes</translation>
    </message>
    <message>
        <source>All Tags</source>
        <translation>Toutes</translation>
    </message>
    <message>
        <source>All tags of the database</source>
        <translation>Toutes les étiquettes de la base de données</translation>
    </message>
    <message>
        <source>D-Tags</source>
        <translation>Étiquettes D</translation>
    </message>
    <message>
        <source>The tags that are on some, but not all, of the files shown</source>
        <translation>Les étiquettes que portent certains des fichiers affichés, mais pas tous</translation>
    </message>
</context>
<context>
    <name>TagGroupForm</name>
    <message>
        <source>Assign Tag Groups</source>
        <translation>Attribuer des groupes d’étiquettes</translation>
    </message>
    <message>
        <source>Check the groups that the selected tag belongs to.</source>
        <translation>Cochez les groupes auxquels appartient l’étiquette sélectionnée.</translation>
    </message>
    <message>
        <source>Check the groups that the selected tags belong to. Half checked are those that hold some of them.</source>
        <translation>Cochez les groupes auxquels appartiennent les étiquettes sélectionnées. Ceux qui n’en contiennent qu’une partie sont à demi cochés.</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Groupes d’étiquettes</translation>
    </message>
    <message>
        <source>No tag groups yet</source>
        <translation>Aucun groupe d’étiquettes</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Groupe</translation>
    </message>
</context>
<context>
    <name>TagGroupModel</name>
    <message>
        <source>Group</source>
        <translation>Groupe</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Onglet</translation>
    </message>
</context>
<context>
    <name>TagGroupingDialog</name>
    <message>
        <source>Several in &amp;succession</source>
        <translation>Plusieurs à la &amp;suite</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>Su&amp;pprimer</translation>
    </message>
    <message>
        <source>Edit Tag Groups</source>
        <translation>Modifier les groupes d’étiquettes</translation>
    </message>
    <message>
        <source>Groups arrange tags; a checked group is a tab below the table of tags.</source>
        <translation>Les groupes rangent les étiquettes&#x202f;; un groupe coché est un onglet sous leur tableau.</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Groupes d’étiquettes</translation>
    </message>
    <message>
        <source>No tag groups yet</source>
        <translation>Aucun groupe d’étiquettes</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <source>Make a new tag group</source>
        <translation>Créer un groupe d’étiquettes</translation>
    </message>
    <message>
        <source>After each new group ask for the next one, until that is cancelled</source>
        <translation>Après chaque nouveau groupe, demander le suivant jusqu’à l’annulation</translation>
    </message>
    <message>
        <source>Delete the selected groups; their tags stay (%1)</source>
        <translation>Supprimer les groupes sélectionnés&#x202f;; leurs étiquettes restent (%1)</translation>
    </message>
</context>
<context>
    <name>TagImporter</name>
    <message>
        <source>Tags without a name, with a date that is none or with texts that are too long: %1</source>
        <translation>Étiquettes sans nom, à date non valide ou à textes trop longs&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>TagRemovalDialog</name>
    <message>
        <source>File Tags</source>
        <translation>Étiquettes des fichiers</translation>
    </message>
    <message>
        <source> Tags</source>
        <translation> Étiquettes</translation>
    </message>
</context>
<context>
    <name>TagsController</name>
    <message>
        <source>Tag Missing</source>
        <translation>Étiquette absente</translation>
    </message>
    <message>
        <source>One of the tags has been removed meanwhile.</source>
        <translation>L’une des étiquettes a été retirée entre-temps.</translation>
    </message>
    <message>
        <source>Node Missing</source>
        <translation>Nœud absent</translation>
    </message>
    <message>
        <source>The node has been removed meanwhile.</source>
        <translation>Le nœud a été retiré entre-temps.</translation>
    </message>
    <message>
        <source>Tag Relationship Missing</source>
        <translation>Relation d’étiquettes absente</translation>
    </message>
    <message>
        <source>The tag relationship has been removed meanwhile.</source>
        <translation>La relation d’étiquettes a été retirée entre-temps.</translation>
    </message>
    <message>
        <source>Error creating tag relationship</source>
        <translation>Erreur à la création de la relation d’étiquettes</translation>
    </message>
    <message>
        <source>This is an illegal tag relationship.</source>
        <translation>Cette relation d’étiquettes n’est pas permise.</translation>
    </message>
</context>
<context>
    <name>TagsTableDock</name>
    <message>
        <source>Tags</source>
        <translation>Étiquettes</translation>
    </message>
    <message>
        <source>No tag matches the filter.</source>
        <translation>Aucune étiquette ne correspond au filtre.</translation>
    </message>
    <message>
        <source>Open a tag or the node of one: the tags that some, but not all, of its files have stand here.</source>
        <translation>Ouvrez une étiquette ou son nœud&#xa0;: les étiquettes que portent certains de ses fichiers, mais pas tous, figurent ici.</translation>
    </message>
    <message>
        <source>No tags yet.
Make one with %1.</source>
        <translation>Aucune étiquette.
Créez-en une avec %1.</translation>
    </message>
    <message>
        <source>No tags in this group.
Drop tags on its tab.</source>
        <translation>Aucune étiquette dans ce groupe.
Déposez des étiquettes sur son onglet.</translation>
    </message>
    <message>
        <source>Hide all columns except Name</source>
        <translation>Masquer toutes les colonnes sauf le nom</translation>
    </message>
    <message>
        <source>Tag Operations</source>
        <translation>Opérations sur les étiquettes</translation>
    </message>
</context>
<context>
    <name>TagsTableModel</name>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>Date de création</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Fichiers</translation>
    </message>
</context>
<context>
    <name>TakenNames</name>
    <message>
        <source>New: %1</source>
        <translation>Nouveau&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>ThumbnailSize</name>
    <message>
        <source>Size of the thumbnails</source>
        <translation>Taille des vignettes</translation>
    </message>
</context>
<context>
    <name>TitleWidget</name>
    <message>
        <source>Tag requirements</source>
        <translation>Étiquettes recherchées</translation>
    </message>
    <message>
        <source>No tag or browsing node open</source>
        <translation>Aucune étiquette et aucun nœud de navigation ouverts</translation>
    </message>
    <message>
        <source>Tag Requirements:</source>
        <translation>Étiquettes recherchées&#xa0;:</translation>
    </message>
    <message>
        <source>and</source>
        <extracomment>between the names of two tags</extracomment>
        <translation>et</translation>
    </message>
    <message>
        <source>or</source>
        <extracomment>between the names of two tags</extracomment>
        <translation>ou</translation>
    </message>
    <message>
        <source>, &lt;i&gt;search:&lt;/i&gt; &quot;%1&quot;</source>
        <translation>, &lt;i&gt;recherche&#xa0;:&lt;/i&gt; «&#x202f;%1&#x202f;»</translation>
    </message>
    <message>
        <source>&lt;i&gt;without:&lt;/i&gt; %1</source>
        <translation>&lt;i&gt;sans&#xa0;:&lt;/i&gt; %1</translation>
    </message>
    <message>
        <source>Drop tags here to show the files that have them; with Ctrl, those of the present ones</source>
        <translation>Déposez ici des étiquettes pour voir les fichiers qui les portent&#x202f;; avec Ctrl, parmi ceux affichés</translation>
    </message>
    <message>
        <source>&amp;Require</source>
        <translation>&amp;Exiger</translation>
    </message>
    <message>
        <source>&amp;Exclude</source>
        <translation>E&amp;xclure</translation>
    </message>
    <message>
        <source>&amp;Open Alone</source>
        <translation>&amp;Ouvrir seule</translation>
    </message>
    <message>
        <source>&amp;Take Off</source>
        <translation>&amp;Retirer</translation>
    </message>
</context>
<context>
    <name>UndoActions</name>
    <message>
        <source>Undo %1</source>
        <translation>Annuler&#xa0;: %1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Rétablir&#xa0;: %1</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rétablir</translation>
    </message>
</context>
<context>
    <name>UndoHistory</name>
    <message>
        <source>Undone: %1</source>
        <translation>Annulé&#xa0;: %1</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>Rétabli&#xa0;: %1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>1 file</source>
        <translation>1 fichier</translation>
    </message>
    <message numerus="yes">
        <source>%Ln files</source>
        <translation>
            <numerusform>%Ln fichier</numerusform>
            <numerusform>%Ln fichiers</numerusform>
        </translation>
    </message>
    <message>
        <source>1 tag</source>
        <translation>1 étiquette</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tags</source>
        <translation>
            <numerusform>%Ln étiquette</numerusform>
            <numerusform>%Ln étiquettes</numerusform>
        </translation>
    </message>
    <message>
        <source>1 node</source>
        <translation>1 nœud</translation>
    </message>
    <message numerus="yes">
        <source>%Ln nodes</source>
        <translation>
            <numerusform>%Ln nœud</numerusform>
            <numerusform>%Ln nœuds</numerusform>
        </translation>
    </message>
    <message>
        <source>1 link</source>
        <translation>1 lien</translation>
    </message>
    <message numerus="yes">
        <source>%Ln links</source>
        <translation>
            <numerusform>%Ln lien</numerusform>
            <numerusform>%Ln liens</numerusform>
        </translation>
    </message>
    <message>
        <source>, </source>
        <comment>between the parts of a list</comment>
        <translation>, </translation>
    </message>
    <message>
        <source>The rest is done. These have been changed or removed since, and were left as they are: %1.</source>
        <translation>Le reste est fait. Ceci a été modifié ou retiré depuis et reste tel quel&#xa0;: %1.</translation>
    </message>
</context>
<context>
    <name>UpdateBar</name>
    <message>
        <source>Download New Version</source>
        <translation>Télécharger la nouvelle version</translation>
    </message>
    <message>
        <source>Install New Version</source>
        <translation>Installer la nouvelle version</translation>
    </message>
    <message>
        <source>Cancel Download</source>
        <translation>Annuler le téléchargement</translation>
    </message>
    <message>
        <source>Downloading new version: </source>
        <translation>Téléchargement de la nouvelle version&#xa0;: </translation>
    </message>
    <message>
        <source>Error Downloading Update</source>
        <translation>Erreur de téléchargement</translation>
    </message>
    <message>
        <source>An error occurred while downloading the new version.</source>
        <translation>Une erreur s’est produite lors du téléchargement de la nouvelle version.</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Mise à jour</translation>
    </message>
    <message>
        <source>This program must close in order to open the installer of a new version.</source>
        <translation>Ce programme doit se fermer pour ouvrir l’installateur de la nouvelle version.</translation>
    </message>
    <message>
        <source>The installer of the new version could not be opened.</source>
        <translation>L’installateur de la nouvelle version n’a pas pu être ouvert.</translation>
    </message>
</context>
<context>
    <name>WindowCommands</name>
    <message>
        <source>Connect</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Se déconnecter</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>New Local Database</source>
        <translation>Nouvelle base de données locale</translation>
    </message>
    <message>
        <source>Database</source>
        <translation>Base de données</translation>
    </message>
    <message>
        <source>Shell</source>
        <translation>Coquille</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Database Info</source>
        <translation>Informations sur la base</translation>
    </message>
    <message>
        <source>Show All Docks</source>
        <translation>Afficher tous les panneaux</translation>
    </message>
    <message>
        <source>Select Browsing Tree</source>
        <translation>Choisir l’arbre de navigation</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Préférences</translation>
    </message>
    <message>
        <source>Tag Groups</source>
        <translation>Groupes d’étiquettes</translation>
    </message>
    <message>
        <source>Browsing Tree List</source>
        <translation>Liste des arbres de navigation</translation>
    </message>
    <message>
        <source>Remake thumbnails</source>
        <translation>Régénérer les vignettes</translation>
    </message>
    <message>
        <source>Quick Start Guide</source>
        <translation>Prise en main</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuel</translation>
    </message>
    <message>
        <source>Nameplate</source>
        <translation>À propos de Vorna</translation>
    </message>
    <message>
        <source>Send feedback</source>
        <translation>Envoyer des commentaires</translation>
    </message>
    <message>
        <source>Send feedback to %1</source>
        <translation>Envoyer des commentaires à %1</translation>
    </message>
    <message>
        <source>Ext</source>
        <extracomment>a short &quot;external&quot;, on a button of the tool bar</extracomment>
        <translation>Ext</translation>
    </message>
    <message>
        <source>Link to files (keep external)</source>
        <translation>Lier aux fichiers (les laisser externes)</translation>
    </message>
    <message>
        <source>Int</source>
        <extracomment>a short &quot;internal&quot;, on a button of the tool bar</extracomment>
        <translation>Int</translation>
    </message>
    <message>
        <source>Copy files into database (make internal)</source>
        <translation>Copier les fichiers dans la base de données (internes)</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
</context>
<context>
    <name>WindowParts</name>
    <message>
        <source>File Counts</source>
        <translation>Nombre de fichiers</translation>
    </message>
    <message>
        <source>Show how many files each tag and node has</source>
        <translation>Affiche le nombre de fichiers de chaque étiquette et de chaque nœud</translation>
    </message>
</context>
</TS>
