<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>refframe</name>
    <message>
        <source> Approximation accuracy </source>
        <translation> Genauigkeit der Näherung </translation>
    </message>
    <message>
        <source> Data </source>
        <translation> Daten </translation>
    </message>
    <message>
        <source> Data Grid </source>
        <translation> Datengitter </translation>
    </message>
    <message>
        <source> Data Source </source>
        <translation> Datenquelle </translation>
    </message>
    <message>
        <source> Height </source>
        <translation> Höhe </translation>
    </message>
    <message>
        <source> Height System </source>
        <translation> Höhensystem </translation>
    </message>
    <message>
        <source> Information </source>
        <translation> Information </translation>
    </message>
    <message>
        <source> Latitude/Longitude </source>
        <translation> Breite/Länge </translation>
    </message>
    <message>
        <source> Offset value </source>
        <translation> Versatz </translation>
    </message>
    <message>
        <source> Reference System </source>
        <translation> Bezugssystem </translation>
    </message>
    <message>
        <source> Source </source>
        <translation> Quelle </translation>
    </message>
    <message>
        <source> Target </source>
        <translation> Ziel </translation>
    </message>
    <message>
        <source> View mode </source>
        <translation> Darstellung </translation>
    </message>
    <message>
        <source> Zoom (source data interpolation) </source>
        <translation> Zoom (Interpolation der Quelldaten) </translation>
    </message>
    <message>
        <source>"%1" cannot be read: %2</source>
        <translation>„%1“ kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>"%1" was not written by this tool, and is kept. Move it away first.</source>
        <translation>„%1“ wurde nicht von diesem Werkzeug geschrieben und bleibt erhalten. Verschieben Sie die Datei zuerst.</translation>
    </message>
    <message>
        <source>"%s" not found</source>
        <translation>„%s“ nicht gefunden</translation>
    </message>
    <message>
        <source>%1 cannot be read</source>
        <translation>%1 kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1, a table</source>
        <translation>%1, eine Tabelle</translation>
    </message>
    <message>
        <source>%1, an offset of %2 %3</source>
        <translation>%1, ein Versatz von %2 %3</translation>
    </message>
    <message>
        <source>%1: %2 systems</source>
        <translation>%1: %2 Systeme</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Übernehmen</translation>
    </message>
    <message>
        <source>&amp;Browse</source>
        <translation>&amp;Ansehen</translation>
    </message>
    <message>
        <source>&amp;Choose...</source>
        <translation>&amp;Auswählen...</translation>
    </message>
    <message>
        <source>&amp;Copy as text</source>
        <translation>Als Text &amp;kopieren</translation>
    </message>
    <message>
        <source>&amp;Database</source>
        <translation>Daten&amp;bank</translation>
    </message>
    <message>
        <source>&amp;Description</source>
        <translation>&amp;Beschreibung</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <translation>&amp;Details</translation>
    </message>
    <message>
        <source>&amp;Dialog options...</source>
        <translation>&amp;Dialogoptionen...</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Fit</source>
        <translation>&amp;Einpassen</translation>
    </message>
    <message>
        <source>&amp;Go back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>&amp;Import...</source>
        <translation>&amp;Import...</translation>
    </message>
    <message>
        <source>&amp;Insert</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;List</source>
        <translation>&amp;Liste</translation>
    </message>
    <message>
        <source>&amp;Manage database...</source>
        <translation>Datenbank &amp;verwalten...</translation>
    </message>
    <message>
        <source>&amp;Mode</source>
        <translation>&amp;Modus</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open tree...</source>
        <translation>Baum ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Save tree...</source>
        <translation>Baum &amp;speichern...</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Speichern...</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>&amp;Suche</translation>
    </message>
    <message>
        <source>&amp;System</source>
        <translation>&amp;System</translation>
    </message>
    <message>
        <source>&amp;WKT 2</source>
        <translation>&amp;WKT 2</translation>
    </message>
    <message>
        <source>A number; the decimal separator is "%1"</source>
        <translation>Eine Zahl; das Dezimaltrennzeichen ist „%1“</translation>
    </message>
    <message>
        <source>Abbreviation</source>
        <translation>Abkürzung</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>Annehmen</translation>
    </message>
    <message>
        <source>Add the text to the height system description </source>
        <translation>Den Text der Beschreibung des Höhensystems hinzufügen </translation>
    </message>
    <message>
        <source>Added to the database as number %1.</source>
        <translation>Als Nummer %1 in die Datenbank aufgenommen.</translation>
    </message>
    <message>
        <source>All %1</source>
        <translation>Alle %1</translation>
    </message>
    <message>
        <source>All fields</source>
        <translation>Alle Felder</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>Angular unit</source>
        <translation>Winkeleinheit</translation>
    </message>
    <message>
        <source>Angular units</source>
        <translation>Winkeleinheit</translation>
    </message>
    <message>
        <source>Another program is writing to the database.</source>
        <translation>Ein anderes Programm schreibt gerade in die Datenbank.</translation>
    </message>
    <message>
        <source>Another user has changed this object since you opened it. Nothing is saved yet.</source>
        <translation>Ein anderer Benutzer hat dieses Objekt geändert, seit Sie es geöffnet haben. Noch ist nichts gespeichert.</translation>
    </message>
    <message>
        <source>Another user has changed this to: %1</source>
        <translation>Ein anderer Benutzer hat dies geändert in: %1</translation>
    </message>
    <message>
        <source>Approximating geoid undulation data</source>
        <translation>Geoidundulationen werden angenähert</translation>
    </message>
    <message>
        <source>Approximation of</source>
        <translation>Näherung von</translation>
    </message>
    <message>
        <source>Approximation results</source>
        <translation>Ergebnisse der Näherung</translation>
    </message>
    <message>
        <source>Area of use</source>
        <translation>Geltungsbereich</translation>
    </message>
    <message>
        <source>Area of use of EPSG:%1: %2</source>
        <translation>Geltungsbereich von EPSG:%1: %2</translation>
    </message>
    <message>
        <source>At most %1 characters can be typed here</source>
        <translation>Hier können höchstens %1 Zeichen eingegeben werden</translation>
    </message>
    <message>
        <source>Azimuth</source>
        <translation>Azimut</translation>
    </message>
    <message>
        <source>Back to the list</source>
        <translation>Zurück zur Liste</translation>
    </message>
    <message>
        <source>Base units</source>
        <translation>Basiseinheiten</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cannot create file</source>
        <translation>Datei kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>Cannot create resource</source>
        <translation>Ressource kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>Cannot open database</source>
        <translation>Datenbank kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Cannot open table</source>
        <translation>Tabelle kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Cannot write to the database</source>
        <translation>In die Datenbank kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>Part of the last change is missing, as in a copy that was made while it was under way. Check the database or put a backup back. Tables that are too old:</source>
        <translation>Ein Teil der letzten Änderung fehlt, wie in einer Kopie, die währenddessen gemacht wurde. Prüfen Sie die Datenbank oder spielen Sie eine Sicherung zurück. Zu alte Tabellen:</translation>
    </message>
    <message>
        <source>There is not enough memory</source>
        <translation>Der Arbeitsspeicher reicht nicht aus</translation>
    </message>
    <message>
        <source>A table was missing and has been made anew, empty:</source>
        <translation>Eine Tabelle fehlte und wurde neu und leer angelegt:</translation>
    </message>
    <message>
        <source>Cell size is greater than table size!</source>
        <translation>Die Zelle ist größer als die Tabelle!</translation>
    </message>
    <message>
        <source>Change the current object</source>
        <translation>Das aktuelle Objekt ändern</translation>
    </message>
    <message>
        <source>Choose the current row (Ctrl+Enter)</source>
        <translation>Die aktuelle Zeile auswählen (Strg+Eingabe)</translation>
    </message>
    <message>
        <source>Choose...</source>
        <translation>Auswählen...</translation>
    </message>
    <message>
        <source>Choose: %1</source>
        <translation>Auswählen: %1</translation>
    </message>
    <message>
        <source>Click or press Enter to choose from the list, or type a value</source>
        <translation>Klicken oder Eingabetaste drücken, um aus der Liste zu wählen, oder einen Wert eingeben</translation>
    </message>
    <message>
        <source>Click to take it over.</source>
        <translation>Ein Klick übernimmt es.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Colour of &amp;refused input</source>
        <translation>Farbe &amp;abgelehnter Eingaben</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>Befehle</translation>
    </message>
    <message>
        <source>Confirmation</source>
        <translation>Bestätigung</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Erzeugen</translation>
    </message>
    <message>
        <source>Current version does not support latitude/longitude georeference</source>
        <translation>Die vorliegende Version unterstützt keine Georeferenzierung in geographischer Breite und Länge</translation>
    </message>
    <message>
        <source>D&amp;escription</source>
        <translation>Besc&amp;hreibung</translation>
    </message>
    <message>
        <source>Database manager</source>
        <translation>Datenbankverwaltung</translation>
    </message>
    <message>
        <source>Databases (*.qvdb)|*.qvdb|All files (*.*)|*.*</source>
        <translation>Datenbanken (*.qvdb)|*.qvdb|Alle Dateien (*.*)|*.*</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Datum shift</source>
        <translation>Datumsübergang</translation>
    </message>
    <message>
        <source>Describe the current row</source>
        <translation>Die aktuelle Zeile beschreiben</translation>
    </message>
    <message>
        <source>Describe the system that is current in the database</source>
        <translation>Das in der Datenbank aktuelle System beschreiben</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>Description   </source>
        <translation>Beschreibung   </translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Dialog options</source>
        <translation>Dialogoptionen</translation>
    </message>
    <message>
        <source>Do you really want to delete</source>
        <translation>Wirklich löschen:</translation>
    </message>
    <message>
        <source>E&amp;xport...</source>
        <translation>E&amp;xport...</translation>
    </message>
    <message>
        <source>East</source>
        <translation>Osten</translation>
    </message>
    <message>
        <source>Edit Local Cartesian Reference System</source>
        <translation>Lokales kartesisches Bezugssystem bearbeiten</translation>
    </message>
    <message>
        <source>Edit Local Reference System</source>
        <translation>Lokales Bezugssystem bearbeiten</translation>
    </message>
    <message>
        <source>Edit Topocentric Horizontal Reference System</source>
        <translation>Topozentrisches Horizontsystem bearbeiten</translation>
    </message>
    <message>
        <source>Edit angular unit</source>
        <translation>Winkeleinheit bearbeiten</translation>
    </message>
    <message>
        <source>Edit datum shift</source>
        <translation>Datumsübergang bearbeiten</translation>
    </message>
    <message>
        <source>Edit datum shift type</source>
        <translation>Art des Datumsübergangs bearbeiten</translation>
    </message>
    <message>
        <source>Edit geocentric reference system</source>
        <translation>Geozentrisches Bezugssystem bearbeiten</translation>
    </message>
    <message>
        <source>Edit geodetic datum</source>
        <translation>Geodätisches Datum bearbeiten</translation>
    </message>
    <message>
        <source>Edit geodetic reference system</source>
        <translation>Geodätisches Bezugssystem bearbeiten</translation>
    </message>
    <message>
        <source>Edit height system</source>
        <translation>Höhensystem bearbeiten</translation>
    </message>
    <message>
        <source>Edit linear unit</source>
        <translation>Längeneinheit bearbeiten</translation>
    </message>
    <message>
        <source>Edit map projection</source>
        <translation>Kartenprojektion bearbeiten</translation>
    </message>
    <message>
        <source>Edit map projection type info</source>
        <translation>Art der Kartenprojektion bearbeiten</translation>
    </message>
    <message>
        <source>Edit prime meridian</source>
        <translation>Nullmeridian bearbeiten</translation>
    </message>
    <message>
        <source>Edit projected reference system</source>
        <translation>Projiziertes Bezugssystem bearbeiten</translation>
    </message>
    <message>
        <source>Edit reference ellipsoid</source>
        <translation>Bezugsellipsoid bearbeiten</translation>
    </message>
    <message>
        <source>Edit reference system type info</source>
        <translation>Art des Bezugssystems bearbeiten</translation>
    </message>
    <message>
        <source>Edit scale unit</source>
        <translation>Maßstabseinheit bearbeiten</translation>
    </message>
    <message>
        <source>Either a datum or an ellipsoid must be chosen</source>
        <translation>Ein Datum oder ein Ellipsoid muss ausgewählt werden</translation>
    </message>
    <message>
        <source>Ellipsoid</source>
        <translation>Ellipsoid</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Every &amp;nth pixel</source>
        <translation>Jedes &amp;n-te Pixel</translation>
    </message>
    <message>
        <source>Export folder</source>
        <translation>Ordner für den Export</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Fields that differ</source>
        <translation>Abweichende Felder</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>First axis direction</source>
        <translation>Richtung der ersten Achse</translation>
    </message>
    <message>
        <source>First axis name</source>
        <translation>Name der ersten Achse</translation>
    </message>
    <message>
        <source>First plane axis name</source>
        <translation>Name der ersten Lageachse</translation>
    </message>
    <message>
        <source>Flattening</source>
        <translation>Abplattung</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Full: choosing and changing</source>
        <translation>Vollständig: auswählen und ändern</translation>
    </message>
    <message>
        <source>Geoid data are not available, you should create it before saving.</source>
        <translation>Es sind keine Geoiddaten vorhanden. Sie müssen vor dem Speichern erzeugt werden.</translation>
    </message>
    <message>
        <source>Grayscale</source>
        <translation>Graustufen</translation>
    </message>
    <message>
        <source>Height axis name</source>
        <translation>Name der Höhenachse</translation>
    </message>
    <message>
        <source>Height units</source>
        <translation>Einheit der Höhen</translation>
    </message>
    <message>
        <source>Heights</source>
        <translation>Höhen</translation>
    </message>
    <message>
        <source>Heights above ellipsoid</source>
        <translation>Höhen über dem Ellipsoid</translation>
    </message>
    <message>
        <source>Heights by colour</source>
        <translation>Höhen nach Farbe</translation>
    </message>
    <message>
        <source>I&amp;nfo</source>
        <translation>I&amp;nfo</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>Id</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Import failed</source>
        <translation>Import fehlgeschlagen</translation>
    </message>
    <message>
        <source>In the database already as number %1.</source>
        <translation>Als Nummer %1 bereits in der Datenbank.</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Index</translation>
    </message>
    <message>
        <source>Information</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Ini files (*.ini)|*.ini|All files (*.*)|*.*</source>
        <translation>Ini-Dateien (*.ini)|*.ini|Alle Dateien (*.*)|*.*</translation>
    </message>
    <message>
        <source>It cannot be read, or is empty</source>
        <translation>Sie kann nicht gelesen werden oder ist leer</translation>
    </message>
    <message>
        <source>It does not begin with a grid: six numbers for south, north, west, east and the cell sizes north-south and east-west</source>
        <translation>Sie beginnt nicht mit einem Gitter: sechs Zahlen für Süd, Nord, West, Ost und die Zellgrößen Nord-Süd und Ost-West</translation>
    </message>
    <message>
        <source>It has fewer heights than its grid has nodes, or one that is no number</source>
        <translation>Sie hat weniger Höhen als ihr Gitter Knoten, oder eine, die keine Zahl ist</translation>
    </message>
    <message>
        <source>Keep &amp;mine</source>
        <translation>&amp;Eigene behalten</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Bezeichnung</translation>
    </message>
    <message>
        <source>Latitude &amp; longitude units</source>
        <translation>Einheit von Breite &amp; Länge</translation>
    </message>
    <message>
        <source>Latitude Abbreviation</source>
        <translation>Abkürzung der Breite</translation>
    </message>
    <message>
        <source>Left handed</source>
        <translation>Linkshändig</translation>
    </message>
    <message>
        <source>Left-handed</source>
        <translation>Linkshändig</translation>
    </message>
    <message>
        <source>Lens</source>
        <translation>Lupe</translation>
    </message>
    <message>
        <source>Linear unit</source>
        <translation>Längeneinheit</translation>
    </message>
    <message>
        <source>Linear units</source>
        <translation>Längeneinheit</translation>
    </message>
    <message>
        <source>List</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>Load coordinate system</source>
        <translation>Koordinatensystem laden</translation>
    </message>
    <message>
        <source>Loading geoid undulation data</source>
        <translation>Geoidundulationen werden geladen</translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Longitude Abbreviation</source>
        <translation>Abkürzung der Länge</translation>
    </message>
    <message>
        <source>Major semi-axis</source>
        <translation>Große Halbachse</translation>
    </message>
    <message>
        <source>Make a new object (Insert)</source>
        <translation>Ein neues Objekt anlegen (Einfg)</translation>
    </message>
    <message>
        <source>Map projection</source>
        <translation>Kartenprojektion</translation>
    </message>
    <message>
        <source>Map projection parameters calculation is not implemented yet!</source>
        <translation>Die Berechnung der Parameter einer Kartenprojektion ist noch nicht verfügbar!</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max</translation>
    </message>
    <message>
        <source>Max error</source>
        <translation>Größter Fehler</translation>
    </message>
    <message>
        <source>Mine</source>
        <translation>Eigene</translation>
    </message>
    <message>
        <source>Minor semi-axis</source>
        <translation>Kleine Halbachse</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Next row whose name contains the text (F3)</source>
        <translation>Nächste Zeile, deren Name den Text enthält (F3)</translation>
    </message>
    <message>
        <source>No data</source>
        <translation>Keine Daten</translation>
    </message>
    <message>
        <source>No database</source>
        <translation>Keine Datenbank</translation>
    </message>
    <message>
        <source>No database of reference systems is open.

Make one in a terminal:
refframe init DIR

then open its folder here.</source>
        <translation>Es ist keine Datenbank mit Bezugssystemen geöffnet.

Legen Sie in einem Terminal eine an:
refframe init DIR

und öffnen Sie dann hier den Ordner.</translation>
    </message>
    <message>
        <source>No name contains "%1".</source>
        <translation>Kein Name enthält „%1“.</translation>
    </message>
    <message>
        <source>No system is chosen yet.

The database holds %1 reference systems. Choose one of them, or open a tree from a file.</source>
        <translation>Noch ist kein System ausgewählt.

Die Datenbank enthält %1 Bezugssysteme. Wählen Sie eines davon aus, oder öffnen Sie einen Baum aus einer Datei.</translation>
    </message>
    <message>
        <source>North</source>
        <translation>Norden</translation>
    </message>
    <message>
        <source>Not saved: %1</source>
        <translation>Nicht gespeichert: %1</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Object list</source>
        <translation>Objektliste</translation>
    </message>
    <message>
        <source>Object type</source>
        <translation>Objektart</translation>
    </message>
    <message>
        <source>Object types</source>
        <translation>Objektarten</translation>
    </message>
    <message>
        <source>Objects that could not be written: %1</source>
        <translation>Objekte, die nicht geschrieben werden konnten: %1</translation>
    </message>
    <message>
        <source>Offset</source>
        <translation>Versatz</translation>
    </message>
    <message>
        <source>Offset value</source>
        <translation>Versatz</translation>
    </message>
    <message>
        <source>One axis runs north or south, the other one east or west</source>
        <translation>Eine Achse weist nach Norden oder Süden, die andere nach Osten oder Westen</translation>
    </message>
    <message>
        <source>One must be chosen</source>
        <translation>Hier muss etwas ausgewählt sein</translation>
    </message>
    <message>
        <source>Open database &amp;container...</source>
        <translation>Datenbank&amp;container öffnen...</translation>
    </message>
    <message>
        <source>Open database &amp;folder...</source>
        <translation>Datenbank&amp;ordner öffnen...</translation>
    </message>
    <message>
        <source>Open database container</source>
        <translation>Datenbankcontainer öffnen</translation>
    </message>
    <message>
        <source>Open database folder</source>
        <translation>Datenbankordner öffnen</translation>
    </message>
    <message>
        <source>Open database folder...</source>
        <translation>Datenbankordner öffnen...</translation>
    </message>
    <message>
        <source>Open height file</source>
        <translation>Höhendatei öffnen</translation>
    </message>
    <message>
        <source>Open ini file</source>
        <translation>Ini-Datei öffnen</translation>
    </message>
    <message>
        <source>Open tree</source>
        <translation>Baum öffnen</translation>
    </message>
    <message>
        <source>Origin coordinates</source>
        <translation>Koordinaten des Ursprungs</translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>Plane Reference System</source>
        <translation>Lagebezugssystem</translation>
    </message>
    <message>
        <source>Plane reference system must be completely defined before specifying height system</source>
        <translation>Das Lagebezugssystem muss vollständig definiert sein, bevor das Höhensystem festgelegt werden kann</translation>
    </message>
    <message>
        <source>Positive Longitude</source>
        <translation>Positive Länge (0° bis 360°)</translation>
    </message>
    <message>
        <source>Predefined geoid</source>
        <translation>Vordefiniertes Geoid</translation>
    </message>
    <message>
        <source>Previous row whose name contains the text (Shift+F3)</source>
        <translation>Vorige Zeile, deren Name den Text enthält (Umschalt+F3)</translation>
    </message>
    <message>
        <source>Primary Reference System</source>
        <translation>Primäres Bezugssystem</translation>
    </message>
    <message>
        <source>Primary system</source>
        <translation>Primäres System</translation>
    </message>
    <message>
        <source>Prime meridian</source>
        <translation>Nullmeridian</translation>
    </message>
    <message>
        <source>Projection type</source>
        <translation>Art der Projektion</translation>
    </message>
    <message>
        <source>RMS</source>
        <translation>RMS</translation>
    </message>
    <message>
        <source>RMS error</source>
        <translation>RMS-Fehler</translation>
    </message>
    <message>
        <source>Recalculate from source to target</source>
        <translation>Von der Quelle ins Ziel umrechnen</translation>
    </message>
    <message>
        <source>Recalculate height system data grid</source>
        <translation>Gitter des Höhensystems umrechnen</translation>
    </message>
    <message>
        <source>Recalculating geoid undulation data</source>
        <translation>Geoidundulationen werden umgerechnet</translation>
    </message>
    <message>
        <source>Reference System</source>
        <translation>Bezugssystem</translation>
    </message>
    <message>
        <source>Reference system</source>
        <translation>Bezugssystem</translation>
    </message>
    <message>
        <source>Reference systems</source>
        <translation>Bezugssysteme</translation>
    </message>
    <message>
        <source>Reference systems as text (*.reference system)|*.reference system|Reference systems in XML (*.x-ref-system)|*.x-ref-system|All files (*.*)|*.*</source>
        <translation>Bezugssysteme als Text (*.reference system)|*.reference system|Bezugssysteme in XML (*.x-ref-system)|*.x-ref-system|Alle Dateien (*.*)|*.*</translation>
    </message>
    <message>
        <source>Reference systems database conversion</source>
        <translation>Umwandlung der Datenbank der Bezugssysteme</translation>
    </message>
    <message>
        <source>Reject</source>
        <translation>Ablehnen</translation>
    </message>
    <message>
        <source>Reject &amp;geodetic systems</source>
        <translation>&amp;Geodätische Systeme ablehnen</translation>
    </message>
    <message>
        <source>Remove the current object (Delete)</source>
        <translation>Das aktuelle Objekt entfernen (Entf)</translation>
    </message>
    <message>
        <source>Right handed</source>
        <translation>Rechtshändig</translation>
    </message>
    <message>
        <source>Right-handed</source>
        <translation>Rechtshändig</translation>
    </message>
    <message>
        <source>Rotation</source>
        <translation>Drehung</translation>
    </message>
    <message>
        <source>Rows that show, of all rows</source>
        <translation>Gezeigte Zeilen von allen Zeilen</translation>
    </message>
    <message>
        <source>Rx</source>
        <translation>Rx</translation>
    </message>
    <message>
        <source>Ry</source>
        <translation>Ry</translation>
    </message>
    <message>
        <source>Rz</source>
        <translation>Rz</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save coordinate system</source>
        <translation>Koordinatensystem speichern</translation>
    </message>
    <message>
        <source>Save image to file</source>
        <translation>Bild in Datei speichern</translation>
    </message>
    <message>
        <source>Save it as a new one?</source>
        <translation>Soll es als neues gespeichert werden?</translation>
    </message>
    <message>
        <source>Save nothing and look at the fields first.</source>
        <translation>Nichts speichern und zuerst die Felder ansehen.</translation>
    </message>
    <message>
        <source>Save tree</source>
        <translation>Baum speichern</translation>
    </message>
    <message>
        <source>Save your values over the other user's.</source>
        <translation>Die eigenen Werte über die anderen speichern.</translation>
    </message>
    <message>
        <source>Saving geoid undulation data</source>
        <translation>Geoidundulationen werden gespeichert</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Maßstab</translation>
    </message>
    <message>
        <source>Scale units</source>
        <translation>Maßstabseinheit</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suche</translation>
    </message>
    <message>
        <source>Search down</source>
        <translation>Abwärts suchen</translation>
    </message>
    <message>
        <source>Search up</source>
        <translation>Aufwärts suchen</translation>
    </message>
    <message>
        <source>Second axis direction</source>
        <translation>Richtung der zweiten Achse</translation>
    </message>
    <message>
        <source>Second axis name</source>
        <translation>Name der zweiten Achse</translation>
    </message>
    <message>
        <source>Second plane axis name</source>
        <translation>Name der zweiten Lageachse</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswahl:</translation>
    </message>
    <message>
        <source>Show &amp;Import and Export while choosing</source>
        <translation>&amp;Import und Export auch beim Auswählen zeigen</translation>
    </message>
    <message>
        <source>Show and change the objects of every type</source>
        <translation>Die Objekte jeder Art zeigen und ändern</translation>
    </message>
    <message>
        <source>Show and change the objects of this type</source>
        <translation>Die Objekte dieser Art zeigen und ändern</translation>
    </message>
    <message>
        <source>Show the image larger (+ or the wheel)</source>
        <translation>Das Bild größer zeigen (+ oder das Mausrad)</translation>
    </message>
    <message>
        <source>Show the image smaller (- or the wheel)</source>
        <translation>Das Bild kleiner zeigen (- oder das Mausrad)</translation>
    </message>
    <message>
        <source>Show the whole image</source>
        <translation>Das ganze Bild zeigen</translation>
    </message>
    <message>
        <source>Simple: choosing only</source>
        <translation>Einfach: nur auswählen</translation>
    </message>
    <message>
        <source>South</source>
        <translation>Süden</translation>
    </message>
    <message>
        <source>Spheroid</source>
        <translation>Kugel</translation>
    </message>
    <message>
        <source>Step N-S</source>
        <translation>Schritt N-S</translation>
    </message>
    <message>
        <source>Step W-E</source>
        <translation>Schritt W-O</translation>
    </message>
    <message>
        <source>Step from north to south</source>
        <translation>Schritt von Nord nach Süd</translation>
    </message>
    <message>
        <source>Step from west to east</source>
        <translation>Schritt von West nach Ost</translation>
    </message>
    <message>
        <source>Store this system in the database</source>
        <translation>Dieses System in der Datenbank ablegen</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Take &amp;theirs</source>
        <translation>&amp;Andere übernehmen</translation>
    </message>
    <message>
        <source>Take an object from a file</source>
        <translation>Ein Objekt aus einer Datei übernehmen</translation>
    </message>
    <message>
        <source>The data grid is not complete, or has limits in the wrong order</source>
        <translation>Das Datengitter ist nicht vollständig, oder seine Grenzen sind vertauscht</translation>
    </message>
    <message>
        <source>The database cannot be read</source>
        <translation>Die Datenbank ist nicht lesbar</translation>
    </message>
    <message>
        <source>The database cannot be read: %1</source>
        <translation>Die Datenbank ist nicht lesbar: %1</translation>
    </message>
    <message>
        <source>The ellipsoid of the datum is missing</source>
        <translation>Das Ellipsoid des Datums fehlt</translation>
    </message>
    <message>
        <source>The fields above get the other user's values. You save them then.</source>
        <translation>Die Felder oben bekommen die anderen Werte. Gespeichert wird danach.</translation>
    </message>
    <message>
        <source>The height file "%1" cannot be used.</source>
        <translation>Die Höhendatei „%1“ kann nicht verwendet werden.</translation>
    </message>
    <message>
        <source>The heights cannot be checked while the system is not complete</source>
        <translation>Die Höhen lassen sich nicht prüfen, solange das System unvollständig ist</translation>
    </message>
    <message>
        <source>The heights of the file cannot be brought into the plane of the data</source>
        <translation>Die Höhen der Datei lassen sich nicht in das Lagesystem der Daten bringen</translation>
    </message>
    <message>
        <source>The object cannot be deleted because it is used by:</source>
        <translation>Das Objekt kann nicht gelöscht werden, denn es wird verwendet von:</translation>
    </message>
    <message>
        <source>The object has been removed by another user.</source>
        <translation>Das Objekt wurde von einem anderen Benutzer entfernt.</translation>
    </message>
    <message>
        <source>The object has been removed.</source>
        <translation>Das Objekt ist entfernt worden.</translation>
    </message>
    <message>
        <source>The object is under editing now!</source>
        <translation>Das Objekt wird gerade bearbeitet!</translation>
    </message>
    <message>
        <source>The object refers to one that is not in the database. It cannot be used.</source>
        <translation>Das Objekt verweist auf eines, das nicht in der Datenbank steht. Es kann nicht verwendet werden.</translation>
    </message>
    <message>
        <source>The plane system of a file must not have a height system of its own</source>
        <translation>Das Lagesystem einer Datei darf kein eigenes Höhensystem haben</translation>
    </message>
    <message>
        <source>The record names no file</source>
        <translation>Der Datensatz nennt keine Datei</translation>
    </message>
    <message>
        <source>The system refers to an object that is not in the database.</source>
        <translation>Das System verweist auf ein Objekt, das nicht in der Datenbank steht.</translation>
    </message>
    <message>
        <source>The text of this page goes to the clipboard</source>
        <translation>Den Text dieser Seite in die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>The tree does not hold a whole reference system.</source>
        <translation>Der Baum enthält kein vollständiges Bezugssystem.</translation>
    </message>
    <message>
        <source>Theirs</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>There is no WKT 2 of this system: %1</source>
        <translation>Zu diesem System gibt es kein WKT 2: %1</translation>
    </message>
    <message>
        <source>There is no database at "%1".</source>
        <translation>Bei „%1“ gibt es keine Datenbank.</translation>
    </message>
    <message>
        <source>There is no edit dialog for these objects yet</source>
        <translation>Für diese Objekte gibt es noch keinen Bearbeitungsdialog</translation>
    </message>
    <message>
        <source>There is nothing here yet.</source>
        <translation>Hier gibt es noch nichts.</translation>
    </message>
    <message>
        <source>These heights were made for another plane; make them anew</source>
        <translation>Diese Höhen wurden für ein anderes Lagesystem erstellt; erstellen Sie sie neu</translation>
    </message>
    <message>
        <source>These units</source>
        <translation>Diese Einheiten</translation>
    </message>
    <message>
        <source>This is not a number; the decimal separator is "%1"</source>
        <translation>Das ist keine Zahl; das Dezimaltrennzeichen ist „%1“</translation>
    </message>
    <message>
        <source>This must not be 0</source>
        <translation>Der Wert darf nicht 0 sein</translation>
    </message>
    <message>
        <source>This must not be empty</source>
        <translation>Das Feld darf nicht leer sein</translation>
    </message>
    <message>
        <source>This system has no height system</source>
        <translation>Dieses System hat kein Höhensystem</translation>
    </message>
    <message>
        <source>This tree does not hold a whole reference system: %1</source>
        <translation>Dieser Baum enthält kein vollständiges Bezugssystem: %1</translation>
    </message>
    <message>
        <source>Translation</source>
        <translation>Verschiebung</translation>
    </message>
    <message>
        <source>Tree of the system</source>
        <translation>Baum des Systems</translation>
    </message>
    <message>
        <source>Tx</source>
        <translation>Tx</translation>
    </message>
    <message>
        <source>Ty</source>
        <translation>Ty</translation>
    </message>
    <message>
        <source>Type a part of the name, or a code</source>
        <translation>Teil des Namens oder Code eingeben</translation>
    </message>
    <message>
        <source>Tz</source>
        <translation>Tz</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Use another reference system</source>
        <translation>Anderes Bezugssystem verwenden</translation>
    </message>
    <message>
        <source>User-defined geoid</source>
        <translation>Benutzerdefiniertes Geoid</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Vertical Data File</source>
        <translation>Höhendatei</translation>
    </message>
    <message>
        <source>Vertical Offset</source>
        <translation>Höhenversatz</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht:</translation>
    </message>
    <message>
        <source>View approximation errors distribution</source>
        <translation>Verteilung der Fehler der Näherung zeigen</translation>
    </message>
    <message>
        <source>View height system data</source>
        <translation>Daten des Höhensystems</translation>
    </message>
    <message>
        <source>View...</source>
        <translation>Ansehen...</translation>
    </message>
    <message>
        <source>WKT 2</source>
        <translation>WKT 2</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>West</source>
        <translation>Westen</translation>
    </message>
    <message>
        <source>Write the current object to a file; with Shift held, all objects to a folder</source>
        <translation>Das aktuelle Objekt in eine Datei schreiben; mit gedrückter Umschalttaste alle Objekte in einen Ordner</translation>
    </message>
    <message>
        <source>X axis name</source>
        <translation>Name der X-Achse</translation>
    </message>
    <message>
        <source>Y axis name</source>
        <translation>Name der Y-Achse</translation>
    </message>
    <message>
        <source>You are trying to save geoid data which do not correspond to current data creation parameters. Do you really want to save it?</source>
        <translation>Die Geoiddaten entsprechen nicht den Angaben, aus denen sie erzeugt werden. Sollen sie wirklich gespeichert werden?</translation>
    </message>
    <message>
        <source>Z axis name</source>
        <translation>Name der Z-Achse</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>above a predefined geoid, %1</source>
        <translation>über einem vordefinierten Geoid, %1</translation>
    </message>
    <message>
        <source>above the ellipsoid</source>
        <translation>über dem Ellipsoid</translation>
    </message>
    <message>
        <source>angular unit</source>
        <translation>Winkeleinheit</translation>
    </message>
    <message>
        <source>chosen</source>
        <translation>gewählt</translation>
    </message>
    <message>
        <source>datum</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>datum shift</source>
        <translation>Datumsübergang</translation>
    </message>
    <message>
        <source>datum shift type</source>
        <translation>Art des Datumsübergangs</translation>
    </message>
    <message>
        <source>ellipsoid</source>
        <translation>Ellipsoid</translation>
    </message>
    <message>
        <source>geocentric</source>
        <translation>geozentrisch</translation>
    </message>
    <message>
        <source>geodetic</source>
        <translation>geodätisch</translation>
    </message>
    <message>
        <source>it holds no XML. A file in the text form is read under the first filter of the file dialog.</source>
        <translation>sie enthält kein XML. Eine Datei in der Textform wird unter dem ersten Filter des Dateidialogs gelesen.</translation>
    </message>
    <message>
        <source>it is in the XML form, which is not read under the first filter of the file dialog.</source>
        <translation>sie hat die XML-Form, die unter dem ersten Filter des Dateidialogs nicht gelesen wird.</translation>
    </message>
    <message>
        <source>it is too large for the file of an object.</source>
        <translation>sie ist zu groß für die Datei eines Objekts.</translation>
    </message>
    <message>
        <source>it refers to an object that is not in the database</source>
        <translation>es verweist auf ein Objekt, das nicht in der Datenbank steht</translation>
    </message>
    <message>
        <source>linear unit</source>
        <translation>Längeneinheit</translation>
    </message>
    <message>
        <source>local</source>
        <translation>lokal</translation>
    </message>
    <message>
        <source>local Cartesian</source>
        <translation>lokal kartesisch</translation>
    </message>
    <message>
        <source>map projection</source>
        <translation>Kartenprojektion</translation>
    </message>
    <message>
        <source>map projection type</source>
        <translation>Art der Kartenprojektion</translation>
    </message>
    <message>
        <source>not chosen</source>
        <translation>nicht gewählt</translation>
    </message>
    <message>
        <source>prime meridian</source>
        <translation>Nullmeridian</translation>
    </message>
    <message>
        <source>projected</source>
        <translation>projiziert</translation>
    </message>
    <message>
        <source>reference system</source>
        <translation>Bezugssystem</translation>
    </message>
    <message>
        <source>reference system type</source>
        <translation>Art des Bezugssystems</translation>
    </message>
    <message>
        <source>scale unit</source>
        <translation>Maßstabseinheit</translation>
    </message>
    <message>
        <source>south %1, north %2, west %3, east %4, cells %5 by %6</source>
        <translation>Süd %1, Nord %2, West %3, Ost %4, Zellen %5 mal %6</translation>
    </message>
    <message>
        <source>there is not enough memory for it.</source>
        <translation>der Speicher reicht dafür nicht aus.</translation>
    </message>
    <message>
        <source>topocentric horizontal</source>
        <translation>topozentrisch horizontal</translation>
    </message>
    <message>
        <source>vertical reference system</source>
        <translation>Höhenbezugssystem</translation>
    </message>
    <message>
        <source>|Coordinate systems in XML format (*.x-ref-system)|*.x-ref-system|</source>
        <translation>|Koordinatensysteme im XML-Format (*.x-ref-system)|*.x-ref-system|</translation>
    </message>
</context>
</TS>
