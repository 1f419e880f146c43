<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>BonjourBox</name>
    <message>
        <source>Other...</source>
        <translation>Andere ...</translation>
    </message>
</context>
<context>
    <name>CaptureControl</name>
    <message>
        <source>Capture LCD display to .PDF file</source>
        <translation>LCD-Anzeige als PDF-Datei speichern</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>the current directory</source>
        <translation>der aktuelle Ordner</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Choose directory</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose the directory for the files</source>
        <translation>Den Ordner für die Dateien wählen</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Dateiname</translation>
    </message>
    <message>
        <source>Replace # with increment value</source>
        <translation># durch den Zähler ersetzen</translation>
    </message>
    <message>
        <source>Increment value</source>
        <translation>Zähler</translation>
    </message>
    <message>
        <source>Previous file:</source>
        <translation>Vorige Datei:</translation>
    </message>
    <message>
        <source>&lt;none&gt;</source>
        <translation>&lt;keine&gt;</translation>
    </message>
    <message>
        <source>Image width:</source>
        <translation>Bildbreite:</translation>
    </message>
    <message>
        <source>Off: the picture is as large as the screen is shown</source>
        <translation>Aus: Das Bild wird so groß, wie die Anzeige dargestellt ist</translation>
    </message>
    <message>
        <source>3</source>
        <translation>3</translation>
    </message>
    <message>
        <source>Image width</source>
        <translation>Bildbreite</translation>
    </message>
    <message>
        <source>height:</source>
        <translation>Höhe:</translation>
    </message>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>Image height</source>
        <translation>Bildhöhe</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Einheiten</translation>
    </message>
    <message>
        <source>inches</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>cm</source>
        <translation>cm</translation>
    </message>
    <message>
        <source>Border:</source>
        <translation>Rand:</translation>
    </message>
    <message>
        <source>Border</source>
        <translation>Rand</translation>
    </message>
    <message>
        <source>pixels</source>
        <translation>Pixel</translation>
    </message>
    <message>
        <source>Show Cursor</source>
        <translation>Cursor zeigen</translation>
    </message>
    <message>
        <source>Capture</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Save what the screen shows to a file</source>
        <translation>Den Inhalt der Anzeige in eine Datei speichern</translation>
    </message>
    <message>
        <source>Pick destination directory for .pdf screen shots</source>
        <translation>Zielordner für die PDF-Bilder der Anzeige wählen</translation>
    </message>
    <message>
        <source>PDF files (*.pdf)</source>
        <translation>PDF-Dateien (*.pdf)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>ChatWindow</name>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Chat Window</source>
        <translation>Chat-Fenster</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Nachricht</translation>
    </message>
    <message>
        <source>Message to the instruments</source>
        <translation>Nachricht an die Geräte</translation>
    </message>
    <message>
        <source>Send the line to every instrument that receives keys (Return)</source>
        <translation>Die Zeile an jedes Gerät senden, das Tasten empfängt (Eingabetaste)</translation>
    </message>
    <message>
        <source>Transcript</source>
        <translation>Gesprächsverlauf</translation>
    </message>
    <message>
        <source>[Too many at once: %1 lines from instruments are not shown]</source>
        <translation>[Zu viele auf einmal: %1 Zeilen von Geräten werden nicht gezeigt]</translation>
    </message>
</context>
<context>
    <name>ColorEditWidget</name>
    <message>
        <source>no color</source>
        <translation>keine Farbe</translation>
    </message>
</context>
<context>
    <name>ConnectGX7100Ethernet</name>
    <message>
        <source>The connection was refused by the peer. Make sure the GX-7100 is running, and check that the host name and port settings are correct.</source>
        <translation>Die Verbindung wurde von der Gegenstelle abgelehnt. Vergewissern Sie sich, dass das GX-7100 läuft, und prüfen Sie, ob Hostname und Port richtig eingestellt sind.</translation>
    </message>
    <message>
        <source>The host was not found. Please check the host name and port settings.</source>
        <translation>Der Host wurde nicht gefunden. Bitte prüfen Sie die Einstellungen für Hostname und Port.</translation>
    </message>
    <message>
        <source>Network error while trying to connect to:</source>
        <translation>Netzwerkfehler beim Verbinden mit:</translation>
    </message>
    <message>
        <source>The following error occurred: %1. (%2)</source>
        <translation>Es ist folgender Fehler aufgetreten: %1. (%2)</translation>
    </message>
    <message>
        <source>Connect GX-7100</source>
        <translation>GX-7100 verbinden</translation>
    </message>
</context>
<context>
    <name>ConnectionWidget</name>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Remove this tile</source>
        <translation>Diese Kachel entfernen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Open kbd comm to all</source>
        <translation>Tastatur für alle einschalten</translation>
    </message>
    <message>
        <source>Close kbd comm to all</source>
        <translation>Tastatur für alle ausschalten</translation>
    </message>
    <message>
        <source>Send File...</source>
        <translation>Datei senden ...</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Send the keys to every connected instrument</source>
        <translation>Die Tasten an jedes verbundene Gerät senden</translation>
    </message>
    <message>
        <source>Send the keys to no instrument</source>
        <translation>Die Tasten an kein Gerät senden</translation>
    </message>
    <message>
        <source>Send a file to this instrument</source>
        <translation>Eine Datei an dieses Gerät senden</translation>
    </message>
</context>
<context>
    <name>FctKeyBlock</name>
    <message>
        <source>Function keys</source>
        <translation>Funktionstasten</translation>
    </message>
    <message>
        <source>Labels</source>
        <translation>Beschriftung</translation>
    </message>
    <message>
        <source>labels</source>
        <translation>labels</translation>
    </message>
    <message>
        <source>F1</source>
        <translation>F1</translation>
    </message>
    <message>
        <source>F2</source>
        <translation>F2</translation>
    </message>
    <message>
        <source>F3</source>
        <translation>F3</translation>
    </message>
    <message>
        <source>F4</source>
        <translation>F4</translation>
    </message>
    <message>
        <source>F5</source>
        <translation>F5</translation>
    </message>
</context>
<context>
    <name>GroupPrefs</name>
    <message>
        <source>Group Prefs</source>
        <translation>Gruppeneinstellungen</translation>
    </message>
    <message>
        <source>Maximum Columns:</source>
        <translation>Höchstzahl der Spalten:</translation>
    </message>
</context>
<context>
    <name>GroupWindow</name>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Exit the application</source>
        <translation>Das Programm beenden</translation>
    </message>
    <message>
        <source>Add connection</source>
        <translation>Verbindung hinzufügen</translation>
    </message>
    <message>
        <source>Add a connection</source>
        <translation>Eine Verbindung hinzufügen</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
    <message>
        <source>Show the keyboard palette</source>
        <translation>Die Tastaturpalette zeigen</translation>
    </message>
    <message>
        <source>Chat</source>
        <translation>Chat</translation>
    </message>
    <message>
        <source>Show chat window</source>
        <translation>Das Chat-Fenster zeigen</translation>
    </message>
    <message>
        <source>Main tool bar</source>
        <translation>Hauptwerkzeugleiste</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über das Programm</translation>
    </message>
    <message>
        <source>About GX7100Group</source>
        <translation>Über GX7100Group</translation>
    </message>
    <message>
        <source>&lt;h3&gt;GX7100Group %1&lt;/h3&gt;</source>
        <translation>&lt;h3&gt;GX7100Group %1&lt;/h3&gt;</translation>
    </message>
    <message>
        <source>&lt;p&gt;Watch and drive many GX-7100 field instruments at once.&lt;/p&gt;&lt;p&gt;A tile with a red frame receives the keys you type. Click beside its screen to switch the frame on or off.&lt;/p&gt;</source>
        <translation>&lt;p&gt;Viele GX-7100-Feldgeräte zugleich beobachten und bedienen.&lt;/p&gt;&lt;p&gt;Eine Kachel mit rotem Rahmen empfängt die Tasten, die Sie drücken. Klicken Sie neben ihre Anzeige, um den Rahmen ein- oder auszuschalten.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Shift </source>
        <translation>Shift </translation>
    </message>
    <message>
        <source> Ctrl</source>
        <translation> Ctrl</translation>
    </message>
    <message>
        <source>Disconnect and quit?</source>
        <translation>Verbindungen trennen und beenden?</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>what a button does and its shortcut</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Choose the number of columns</source>
        <translation>Die Zahl der Spalten wählen</translation>
    </message>
    <message>
        <source>Show the version of this program</source>
        <translation>Die Version dieses Programms zeigen</translation>
    </message>
    <message>
        <source>Files that have arrived are not saved yet:
%1
Throw them away?</source>
        <translation>Eingetroffene Dateien sind noch nicht gespeichert:
%1
Sollen sie verworfen werden?</translation>
    </message>
</context>
<context>
    <name>HelpGroup</name>
    <message>
        <source>About Qt</source>
        <translation>Über Qt</translation>
    </message>
    <message>
        <source>User Guide for %1</source>
        <translation>Benutzerhandbuch für %1</translation>
    </message>
    <message>
        <source>GX-7100 Manual, ver 6.2</source>
        <translation>GX-7100-Handbuch, Version 6.2</translation>
    </message>
    <message>
        <source>Visit the VESTRA web site</source>
        <translation>Website von VESTRA besuchen</translation>
    </message>
    <message>
        <source>Check for Software updates</source>
        <translation>Nach Software-Updates suchen</translation>
    </message>
    <message>
        <source>Latest GX-7100 news</source>
        <translation>Neuigkeiten zum GX-7100</translation>
    </message>
    <message>
        <source>Latest GX-7100 News from VESTRA</source>
        <translation>Neuigkeiten zum GX-7100 von VESTRA</translation>
    </message>
    <message>
        <source>There is no program here that opens %1.</source>
        <translation>Hier gibt es kein Programm, das %1 öffnet.</translation>
    </message>
    <message>
        <source>Show the version of Qt</source>
        <translation>Die Version von Qt zeigen</translation>
    </message>
    <message>
        <source>Open the user guide</source>
        <translation>Das Benutzerhandbuch öffnen</translation>
    </message>
    <message>
        <source>Open the manual of the instrument</source>
        <translation>Das Handbuch des Geräts öffnen</translation>
    </message>
    <message>
        <source>Open the web site in the browser</source>
        <translation>Die Website im Browser öffnen</translation>
    </message>
    <message>
        <source>Ask the download server for a newer release</source>
        <translation>Den Download-Server nach einer neueren Version fragen</translation>
    </message>
    <message>
        <source>Show the latest news</source>
        <translation>Die letzten Neuigkeiten zeigen</translation>
    </message>
</context>
<context>
    <name>Keyboard</name>
    <message>
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
    <message>
        <source>Instrument keypad</source>
        <translation>Tastenfeld des Geräts</translation>
    </message>
    <message>
        <source>del</source>
        <translation>del</translation>
    </message>
    <message>
        <source>escape</source>
        <translation>escape</translation>
    </message>
    <message>
        <source>enter</source>
        <translation>enter</translation>
    </message>
    <message>
        <source>Stays down until clicked again, or until the Ctrl key of the computer keyboard is used</source>
        <translation>Bleibt gedrückt, bis Sie erneut klicken oder die Ctrl-Taste (Strg) der Computertastatur benutzen</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>Stays down until clicked again, or until the Shift key of the computer keyboard is used</source>
        <translation>Bleibt gedrückt, bis Sie erneut klicken oder die Shift-Taste (Umschalttaste) der Computertastatur benutzen</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>space</source>
        <translation>space</translation>
    </message>
    <message>
        <source>Cursor keys</source>
        <translation>Cursortasten</translation>
    </message>
    <message>
        <source>Function keys</source>
        <translation>Funktionstasten</translation>
    </message>
    <message>
        <source>HALT</source>
        <translation>HALT</translation>
    </message>
    <message>
        <source>XXXX</source>
        <translation>XXXX</translation>
    </message>
    <message>
        <source>newline</source>
        <translation>newline</translation>
    </message>
    <message>
        <source>delln</source>
        <translation>delln</translation>
    </message>
</context>
<context>
    <name>LCD7100</name>
    <message>
        <source>Edit Color...</source>
        <translation>Farben ändern ...</translation>
    </message>
    <message>
        <source>Edit Font...</source>
        <translation>Schrift ändern ...</translation>
    </message>
    <message>
        <source>Capture Control</source>
        <translation>Anzeige als PDF speichern</translation>
    </message>
    <message>
        <source>Choose the colors of all screens</source>
        <translation>Die Farben aller Anzeigen wählen</translation>
    </message>
    <message>
        <source>Choose the font of all screens</source>
        <translation>Die Schrift aller Anzeigen wählen</translation>
    </message>
    <message>
        <source>Save what this screen shows</source>
        <translation>Den Inhalt dieser Anzeige speichern</translation>
    </message>
    <message>
        <source>The screen shows graphics</source>
        <translation>Die Anzeige zeigt Grafik</translation>
    </message>
</context>
<context>
    <name>LCDColorPicker</name>
    <message>
        <source>Dialog</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Text Color</source>
        <translation>Textfarbe</translation>
    </message>
    <message>
        <source>Click to edit this color</source>
        <translation>Klicken, um diese Farbe zu ändern</translation>
    </message>
    <message>
        <source>Background Color</source>
        <translation>Hintergrundfarbe</translation>
    </message>
    <message>
        <source>Highlight Color</source>
        <translation>Hervorhebungsfarbe</translation>
    </message>
    <message>
        <source>Click color to edit</source>
        <translation>Zum Ändern auf die Farbe klicken</translation>
    </message>
</context>
<context>
    <name>LetterButton</name>
    <message>
        <source>space</source>
        <translation>space</translation>
    </message>
    <message>
        <source>Control code %1 hexadecimal</source>
        <translation>Steuerzeichen %1 hexadezimal</translation>
    </message>
</context>
<context>
    <name>NavBlock</name>
    <message>
        <source>Cursor keys</source>
        <translation>Cursortasten</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>home</source>
        <translation>home</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Pfeil nach oben</translation>
    </message>
    <message>
        <source>Up arrow, +cntrst</source>
        <translation>Pfeil nach oben, +cntrst</translation>
    </message>
    <message>
        <source>+cntrst</source>
        <translation>+cntrst</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Seite nach oben</translation>
    </message>
    <message>
        <source>pgup</source>
        <translation>pgup</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Pfeil nach links</translation>
    </message>
    <message>
        <source>Left arrow, text</source>
        <translation>Pfeil nach links, text</translation>
    </message>
    <message>
        <source>text</source>
        <translation>text</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Pfeil nach rechts</translation>
    </message>
    <message>
        <source>Right arrow, grph</source>
        <translation>Pfeil nach rechts, grph</translation>
    </message>
    <message>
        <source>grph</source>
        <translation>grph</translation>
    </message>
    <message>
        <source>End</source>
        <translation>End</translation>
    </message>
    <message>
        <source>end</source>
        <translation>end</translation>
    </message>
    <message>
        <source>Down arrow</source>
        <translation>Pfeil nach unten</translation>
    </message>
    <message>
        <source>Down arrow, -cntrst</source>
        <translation>Pfeil nach unten, -cntrst</translation>
    </message>
    <message>
        <source>-cntrst</source>
        <translation>-cntrst</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Seite nach unten</translation>
    </message>
    <message>
        <source>pgdn</source>
        <translation>pgdn</translation>
    </message>
</context>
<context>
    <name>NewConnection</name>
    <message>
        <source>New Connection</source>
        <translation>Neue Verbindung</translation>
    </message>
    <message>
        <source>Screen Label</source>
        <translation>Bezeichnung der Anzeige</translation>
    </message>
    <message>
        <source>Ethernet</source>
        <translation>Ethernet</translation>
    </message>
    <message>
        <source>RS-232</source>
        <translation>RS-232</translation>
    </message>
    <message>
        <source>Remake Connection</source>
        <translation>Verbindung wiederherstellen</translation>
    </message>
    <message>
        <source>Instrument</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>Serieller Port</translation>
    </message>
</context>
<context>
    <name>NewsBrowser</name>
    <message>
        <source>News</source>
        <translation>Neuigkeiten</translation>
    </message>
</context>
<context>
    <name>PtyPort</name>
    <message>
        <source>this system has no pseudo terminals</source>
        <translation>dieses System hat keine Pseudoterminals</translation>
    </message>
</context>
<context>
    <name>SerialOptions</name>
    <message>
        <source>Instead of TCP, one instrument on a serial line: prints the port to connect to. It takes files, and sends one when the operator&apos;s message is the word &quot;send&quot;.</source>
        <translation>Statt TCP ein Gerät an einer seriellen Leitung: gibt den Port aus, mit dem zu verbinden ist. Es nimmt Dateien entgegen und sendet eine, wenn die Nachricht des Bedieners das Wort „send“ ist.</translation>
    </message>
    <message>
        <source>Speed of the serial line, at 11 bits a byte. 0 takes no time. Default: 57600.</source>
        <translation>Geschwindigkeit der seriellen Leitung bei 11 Bit je Byte. 0 braucht keine Zeit. Vorgabe: 57600.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>Way in which the serial line, or the instrument in a file transfer, misbehaves; see below. Can be given several times.</source>
        <translation>Wie sich die serielle Leitung oder das Gerät bei einer Dateiübertragung fehlerhaft verhält; siehe unten. Kann mehrfach angegeben werden.</translation>
    </message>
    <message>
        <source>name=value</source>
        <translation>Name=Wert</translation>
    </message>
    <message>
        <source>File that the instrument sends until it has received another. Default: a short text.</source>
        <translation>Datei, die das Gerät sendet, bis es eine andere empfangen hat. Vorgabe: ein kurzer Text.</translation>
    </message>
    <message>
        <source>path</source>
        <translation>Pfad</translation>
    </message>
    <message>
        <source>the speed must be a number from 0 to %1</source>
        <translation>die Geschwindigkeit muss eine Zahl von 0 bis %1 sein</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no fault of a line; see --help for those there are</source>
        <translation>„%1“ ist kein Leitungsfehler; --help nennt die vorhandenen</translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <translation>%1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>turns over a bit of so many bytes, 0 to 1</source>
        <translation>kippt ein Bit in so vielen Bytes, 0 bis 1</translation>
    </message>
    <message>
        <source>loses so many bytes, 0 to 1</source>
        <translation>verliert so viele Bytes, 0 bis 1</translation>
    </message>
    <message>
        <source>carries so many bytes twice, 0 to 1</source>
        <translation>überträgt so viele Bytes doppelt, 0 bis 1</translation>
    </message>
    <message>
        <source>holds the line up for 1.5 s at so many bytes, 0 to 1</source>
        <translation>hält die Leitung bei so vielen Bytes 1,5 s lang auf, 0 bis 1</translation>
    </message>
    <message>
        <source>sends this block of a file under a wrong number</source>
        <translation>sendet diesen Block einer Datei unter falscher Nummer</translation>
    </message>
    <message>
        <source>answers this block of a file with that code, 0 to 255</source>
        <translation>beantwortet diesen Block einer Datei mit diesem Code, 0 bis 255</translation>
    </message>
    <message>
        <source>gives a file up at this block</source>
        <translation>gibt eine Datei bei diesem Block auf</translation>
    </message>
    <message>
        <source>lets the program wait when files are asked for</source>
        <translation>lässt das Programm warten, wenn Dateien verlangt werden</translation>
    </message>
</context>
<context>
    <name>SimulatorOptions</name>
    <message>
        <source>Shows this help.</source>
        <translation>Zeigt diese Hilfe.</translation>
    </message>
    <message>
        <source>Shows the version.</source>
        <translation>Zeigt die Version.</translation>
    </message>
    <message>
        <source>Address to listen on, such as 127.0.0.2 or ::1. Default: all, IPv4 and IPv6.</source>
        <translation>Adresse, an der gewartet wird, etwa 127.0.0.2 oder ::1. Vorgabe: alle, IPv4 und IPv6.</translation>
    </message>
    <message>
        <source>address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>TCP port. 0 takes any free one. Default: 7100, where GX7100Group looks for instruments.</source>
        <translation>TCP-Port. 0 nimmt irgendeinen freien. Vorgabe: 7100, wo GX7100Group Geräte sucht.</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>Screen updates a second on pages that move, up to 1000. 0 updates only when a key or a message has arrived. Default: 4.</source>
        <translation>Bildaktualisierungen je Sekunde auf bewegten Seiten, bis 1000. 0 aktualisiert nur nach einer Taste oder Nachricht. Vorgabe: 4.</translation>
    </message>
    <message>
        <source>Makes the run repeat exactly, clock and readings included. Default: chance, and the time of day.</source>
        <translation>Macht den Lauf genau wiederholbar, mit Uhr und Messwerten. Vorgabe: Zufall und die Uhrzeit.</translation>
    </message>
    <message>
        <source>Page to start on; see below. Default: home.</source>
        <translation>Anfangsseite; siehe unten. Vorgabe: home.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>What the instruments call themselves in their title bar. Default: &quot;Unit&quot; and the number of the connection.</source>
        <translation>Wie sich die Geräte in ihrer Titelzeile nennen. Vorgabe: „Unit“ und die Nummer der Verbindung.</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Announces an instrument of this name on the local network, for GX7100Group to list. Can be given several times.</source>
        <translation>Kündigt im lokalen Netz ein Gerät dieses Namens an, das GX7100Group dann auflistet. Kann mehrfach angegeben werden.</translation>
    </message>
    <message>
        <source>Way to misbehave; see below. Can be given several times.</source>
        <translation>Art des Fehlverhaltens; siehe unten. Kann mehrfach angegeben werden.</translation>
    </message>
    <message>
        <source>Pages: %1.</source>
        <translation>Seiten: %1.</translation>
    </message>
    <message>
        <source>F1 to F5 and the arrow keys turn pages, Escape goes home.

Faults:
</source>
        <translation>F1 bis F5 und die Pfeiltasten blättern, Escape geht zur Startseite.

Fehler:
</translation>
    </message>
    <message>
        <source>Faults of a serial line:
</source>
        <translation>Fehler einer seriellen Leitung:
</translation>
    </message>
    <message>
        <source>gx7100sim: %1
Try &quot;gx7100sim --help&quot;.
</source>
        <translation>gx7100sim: %1
Hilfe: „gx7100sim --help“.
</translation>
    </message>
    <message>
        <source>Simulates GX-7100 instruments: every connection to its TCP port is an instrument of its own, with a screen that lives and keys that work.
To watch one, start GX7100Group, choose &quot;Add connection&quot;, type an address of this computer (such as 127.0.0.1) and connect. Ctrl+C ends the simulator.</source>
        <translation>Simuliert GX-7100-Geräte: Jede Verbindung zu seinem TCP-Port ist ein eigenes Gerät, mit lebendiger Anzeige und Tasten, die wirken.
Um eines zu sehen, starten Sie GX7100Group, wählen Sie „Verbindung hinzufügen“, geben Sie eine Adresse dieses Rechners ein (etwa 127.0.0.1) und verbinden Sie. Strg+C beendet den Simulator.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an option</source>
        <translation>„%1“ ist keine Option</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an IPv4 or IPv6 address, such as 127.0.0.1</source>
        <translation>„%1“ ist keine IPv4- oder IPv6-Adresse wie etwa 127.0.0.1</translation>
    </message>
    <message>
        <source>the port must be a number from 0 to 65535</source>
        <translation>der Port muss eine Zahl von 0 bis 65535 sein</translation>
    </message>
    <message>
        <source>the rate must be a number from 0 to 1000</source>
        <translation>die Rate muss eine Zahl von 0 bis 1000 sein</translation>
    </message>
    <message>
        <source>there is no page &quot;%1&quot;; pages are %2</source>
        <translation>es gibt keine Seite „%1“; vorhanden sind %2</translation>
    </message>
    <message>
        <source>the seed must be a number from 0 to 4294967295</source>
        <translation>der Startwert muss eine Zahl von 0 bis 4294967295 sein</translation>
    </message>
    <message>
        <source>a name to announce has 1 to 63 bytes, &quot;%1&quot; has %2</source>
        <translation>ein angekündigter Name hat 1 bis 63 Byte, „%1“ hat %2</translation>
    </message>
    <message>
        <source>there is no fault &quot;%1&quot;; see --help for those there are</source>
        <translation>es gibt keinen Fehler „%1“; --help nennt die vorhandenen</translation>
    </message>
    <message>
        <source>Listening on all addresses, port %1
</source>
        <translation>Wartet an allen Adressen, Port %1
</translation>
    </message>
    <message>
        <source>Listening on %1, port %2
</source>
        <translation>Wartet an %1, Port %2
</translation>
    </message>
    <message>
        <source>Connected: instrument %1, from %2
</source>
        <translation>Verbunden: Gerät %1, von %2
</translation>
    </message>
    <message>
        <source>Disconnected: instrument %1
</source>
        <translation>Getrennt: Gerät %1
</translation>
    </message>
    <message>
        <source>Announced: %1
</source>
        <translation>Angekündigt: %1
</translation>
    </message>
    <message>
        <source>gx7100sim: %1
</source>
        <translation>gx7100sim: %1
</translation>
    </message>
    <message>
        <source>done</source>
        <translation>abgeschlossen</translation>
    </message>
    <message>
        <source>timed out</source>
        <translation>Zeitüberschreitung</translation>
    </message>
    <message>
        <source>too noisy</source>
        <translation>zu stark gestört</translation>
    </message>
    <message>
        <source>out of sequence</source>
        <translation>falsche Reihenfolge</translation>
    </message>
    <message>
        <source>aborted here</source>
        <translation>hier abgebrochen</translation>
    </message>
    <message>
        <source>aborted by the program</source>
        <translation>vom Programm abgebrochen</translation>
    </message>
    <message>
        <source>Connected
</source>
        <translation>Verbunden
</translation>
    </message>
    <message>
        <source>Disconnected
</source>
        <translation>Getrennt
</translation>
    </message>
    <message>
        <source>File received: %1 bytes, CRC-32 %2
</source>
        <translation>Datei empfangen: %1 Byte, CRC-32 %2
</translation>
    </message>
    <message>
        <source>File transfer: %1
</source>
        <translation>Dateiübertragung: %1
</translation>
    </message>
    <message>
        <source>gx7100sim: no serial port: %1
</source>
        <translation>gx7100sim: kein serieller Port: %1
</translation>
    </message>
    <message>
        <source>Serial port: %1
</source>
        <translation>Serieller Port: %1
</translation>
    </message>
    <message>
        <source>gx7100sim: cannot listen on %1, port %2: %3
</source>
        <translation>gx7100sim: kann nicht an %1, Port %2 warten: %3
</translation>
    </message>
    <message>
        <source>sends every byte in a write of its own</source>
        <translation>sendet jedes Byte in einem eigenen Schreibvorgang</translation>
    </message>
    <message>
        <source>sends bytes between the frames that belong to none</source>
        <translation>sendet zwischen den Rahmen Bytes, die zu keinem gehören</translation>
    </message>
    <message>
        <source>sends frames with unknown tags in between</source>
        <translation>sendet dazwischen Rahmen mit unbekannten Kennungen</translation>
    </message>
    <message>
        <source>sends packets of unknown types in between</source>
        <translation>sendet dazwischen Pakete unbekannter Typen</translation>
    </message>
    <message>
        <source>sends each screen update cut off first, then whole</source>
        <translation>sendet jede Bildaktualisierung erst abgeschnitten, dann ganz</translation>
    </message>
    <message>
        <source>sends each screen update with an item too long first, then whole</source>
        <translation>sendet jede Bildaktualisierung erst mit einem zu langen Eintrag, dann richtig</translation>
    </message>
    <message>
        <source>sends one whole frame, then half a frame, then nothing more</source>
        <translation>sendet einen ganzen Rahmen, dann einen halben, dann nichts mehr</translation>
    </message>
    <message>
        <source>sends one whole frame, then half a frame, then resets the connection</source>
        <translation>sendet einen ganzen Rahmen, dann einen halben, dann bricht die Verbindung ab</translation>
    </message>
</context>
<context>
    <name>TileAccessible</name>
    <message>
        <source>Empty tile</source>
        <translation>Leere Kachel</translation>
    </message>
    <message>
        <source>not connected, receives no keys</source>
        <translation>nicht verbunden, empfängt keine Tasten</translation>
    </message>
    <message>
        <source>connected, receives keys</source>
        <translation>verbunden, empfängt Tasten</translation>
    </message>
    <message>
        <source>connected, receives no keys</source>
        <translation>verbunden, empfängt keine Tasten</translation>
    </message>
</context>
<context>
    <name>TileMenu</name>
    <message>
        <source>Tiles</source>
        <translation>Kacheln</translation>
    </message>
    <message>
        <source>Next tile</source>
        <translation>Nächste Kachel</translation>
    </message>
    <message>
        <source>Go on to the next tile</source>
        <translation>Weiter zur nächsten Kachel</translation>
    </message>
    <message>
        <source>Previous tile</source>
        <translation>Vorige Kachel</translation>
    </message>
    <message>
        <source>Go back to the previous tile</source>
        <translation>Zurück zur vorigen Kachel</translation>
    </message>
    <message>
        <source>Send keys to this tile</source>
        <translation>Tasten an diese Kachel senden</translation>
    </message>
    <message>
        <source>Turn the red frame of this tile on or off</source>
        <translation>Den roten Rahmen dieser Kachel ein- oder ausschalten</translation>
    </message>
    <message>
        <source>Menu of this screen</source>
        <translation>Menü dieser Anzeige</translation>
    </message>
    <message>
        <source>Colors, font and capture</source>
        <translation>Farben, Schrift und Speichern</translation>
    </message>
    <message>
        <source>%1 %2 (%3)</source>
        <comment>number, name and state of a tile</comment>
        <translation>%1 %2 (%3)</translation>
    </message>
</context>
<context>
    <name>TransferPanel</name>
    <message>
        <source>Save the file that the instrument has sent</source>
        <translation>Die Datei speichern, die das Gerät gesendet hat</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>Speichern ...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Send File</source>
        <translation>Datei senden</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: a file for an instrument has at most %2</source>
        <translation>%1: Eine Datei für ein Gerät hat höchstens %2</translation>
    </message>
    <message>
        <source>the connection has ended</source>
        <translation>die Verbindung ist beendet</translation>
    </message>
    <message>
        <source>Save File</source>
        <translation>Datei speichern</translation>
    </message>
    <message>
        <source>%1 was saved</source>
        <translation>%1 wurde gespeichert</translation>
    </message>
    <message>
        <source>Save... (%1)</source>
        <translation>Speichern ... (%1)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Stop the file transfer</source>
        <translation>Die Dateiübertragung abbrechen</translation>
    </message>
    <message>
        <source>Throws away what was not saved</source>
        <translation>Verwirft, was nicht gespeichert wurde</translation>
    </message>
    <message>
        <source>another file is on its way</source>
        <translation>eine andere Datei ist unterwegs</translation>
    </message>
    <message>
        <source>%1 was not sent: %2</source>
        <translation>%1 wurde nicht gesendet: %2</translation>
    </message>
    <message>
        <source>Not sent</source>
        <translation>Nicht gesendet</translation>
    </message>
    <message>
        <source>Too large</source>
        <translation>Zu groß</translation>
    </message>
    <message>
        <source>Not kept: save the others first</source>
        <translation>Nicht behalten: erst die anderen speichern</translation>
    </message>
    <message>
        <source>Not kept</source>
        <translation>Nicht behalten</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Gespeichert</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>%1: not an ordinary file</source>
        <translation>%1: keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>Not a file</source>
        <translation>Keine Datei</translation>
    </message>
</context>
<context>
    <name>TransferProgress</name>
    <message>
        <source>%1 was not sent: %2</source>
        <translation>%1 wurde nicht gesendet: %2</translation>
    </message>
    <message>
        <source>Sending %1</source>
        <translation>%1 wird gesendet</translation>
    </message>
    <message>
        <source>Receiving</source>
        <translation>Empfang</translation>
    </message>
    <message>
        <source>Received %1</source>
        <translation>%1 empfangen</translation>
    </message>
    <message>
        <source>%1 was sent</source>
        <translation>%1 wurde gesendet</translation>
    </message>
    <message>
        <source>%1: waiting for the instrument</source>
        <translation>%1: wartet auf das Gerät</translation>
    </message>
    <message>
        <source>, %1/s</source>
        <translation>, %1/s</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>Gesendet</translation>
    </message>
    <message>
        <source>only %1 of %2</source>
        <translation>nur %1 von %2</translation>
    </message>
    <message>
        <source>%1: %2 arrived</source>
        <translation>%1: %2 angekommen</translation>
    </message>
    <message>
        <source>Not complete</source>
        <translation>Nicht vollständig</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>Receiving: %1</source>
        <translation>Empfang: %1</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>noch %1</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>UpdateWindow</name>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Checking for new software</source>
        <translation>Suche nach neuer Software</translation>
    </message>
    <message>
        <source>checking...</source>
        <translation>Suche läuft ...</translation>
    </message>
    <message>
        <source>&lt;b&gt;&lt;u&gt;GX-7100 Apps&lt;/u&gt;&lt;/b&gt; Your version is %1</source>
        <translation>&lt;b&gt;&lt;u&gt;GX-7100 Apps&lt;/u&gt;&lt;/b&gt; Ihre Version ist %1</translation>
    </message>
    <message>
        <source>Error accessing server. Please try later.</source>
        <translation>Der Server ist nicht erreichbar. Bitte versuchen Sie es später.</translation>
    </message>
    <message>
        <source>A new version (%1) is available</source>
        <translation>Eine neue Version (%1) ist verfügbar</translation>
    </message>
    <message>
        <source>The current release is still %1</source>
        <translation>Die aktuelle Version ist weiterhin %1</translation>
    </message>
    <message>
        <source>Your GX-7100 Apps are up to date</source>
        <translation>Ihre GX-7100 Apps sind auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>Could not complete download.</source>
        <translation>Das Herunterladen ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>%1 is already at %2.</source>
        <translation>%1 befindet sich bereits in %2.</translation>
    </message>
    <message>
        <source>Unable to save the file %1: %2.</source>
        <translation>Die Datei %1 kann nicht gespeichert werden: %2.</translation>
    </message>
    <message>
        <source>Downloading %1...</source>
        <translation>%1 wird heruntergeladen ...</translation>
    </message>
    <message>
        <source>Stored in %1</source>
        <translation>Gespeichert unter %1</translation>
    </message>
    <message>
        <source>Install this now?</source>
        <translation>Jetzt installieren?</translation>
    </message>
    <message>
        <source>Click Yes to shutdown %1 and install the new version.</source>
        <translation>Klicken Sie auf „Ja“, um %1 zu beenden und die neue Version zu installieren.</translation>
    </message>
</context>
<context>
    <name>XferClass</name>
    <message>
        <source>Timeout</source>
        <translation>Zeitüberschreitung</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abbruch</translation>
    </message>
    <message>
        <source>Too Noisy</source>
        <translation>Zu stark gestört</translation>
    </message>
    <message>
        <source>Dropped Packet</source>
        <translation>Paket verloren</translation>
    </message>
</context>
<context>
    <name>portdevice</name>
    <message>
        <source>Cannot open %1: permission denied. The device belongs to the group %2; join it with &quot;sudo usermod -aG %2 $USER&quot;, then log out and in again.</source>
        <translation>%1 kann nicht geöffnet werden: Zugriff verweigert. Das Gerät gehört der Gruppe %2; treten Sie ihr mit „sudo usermod -aG %2 $USER“ bei und melden Sie sich dann ab und wieder an.</translation>
    </message>
    <message>
        <source>Cannot open %1: permission denied. The device belongs to the group %2; ask the administrator for access.</source>
        <translation>%1 kann nicht geöffnet werden: Zugriff verweigert. Das Gerät gehört der Gruppe %2; bitten Sie den Systemverwalter um Zugang.</translation>
    </message>
</context>
<context>
    <name>receivedfile</name>
    <message>
        <source>not an ordinary file</source>
        <translation>keine gewöhnliche Datei</translation>
    </message>
</context>
</TS>
