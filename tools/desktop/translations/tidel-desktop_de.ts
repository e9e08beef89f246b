<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Tidel::Actions</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Channel</source>
        <translation>&amp;Kanal</translation>
    </message>
    <message>
        <source>&amp;Message</source>
        <translation>&amp;Nachricht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Subscribe...</source>
        <translation>&amp;Abonnieren …</translation>
    </message>
    <message>
        <source>&amp;Import Channels...</source>
        <translation>Kanäle &amp;importieren …</translation>
    </message>
    <message>
        <source>&amp;Export Channels...</source>
        <translation>Kanäle &amp;exportieren …</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>&amp;Suchen</translation>
    </message>
    <message>
        <source>Mark &amp;All as Read</source>
        <translation>&amp;Alle als gelesen markieren</translation>
    </message>
    <message>
        <source>&amp;Notify of New Messages</source>
        <translation>Über &amp;neue Nachrichten benachrichtigen</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>A&amp;ktualisieren</translation>
    </message>
    <message>
        <source>Refresh &amp;All</source>
        <translation>&amp;Alle aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>An&amp;halten</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Move to Folder...</source>
        <translation>In Ordner &amp;verschieben …</translation>
    </message>
    <message>
        <source>&amp;Unsubscribe...</source>
        <translation>Ab&amp;bestellen …</translation>
    </message>
    <message>
        <source>&amp;Properties...</source>
        <translation>&amp;Eigenschaften …</translation>
    </message>
    <message>
        <source>Read &amp;On</source>
        <translation>&amp;Weiterlesen</translation>
    </message>
    <message>
        <source>&amp;Next Unread</source>
        <translation>&amp;Nächste ungelesene</translation>
    </message>
    <message>
        <source>&amp;Previous</source>
        <translation>&amp;Vorige</translation>
    </message>
    <message>
        <source>Mark as &amp;Read or Unread</source>
        <translation>Als &amp;gelesen oder ungelesen markieren</translation>
    </message>
    <message>
        <source>&amp;Favorite</source>
        <translation>&amp;Favorit</translation>
    </message>
    <message>
        <source>Open in &amp;Browser</source>
        <translation>Im &amp;Browser öffnen</translation>
    </message>
    <message>
        <source>&amp;Keys</source>
        <translation>&amp;Tasten</translation>
    </message>
    <message>
        <source>&amp;About Tidel Desktop</source>
        <translation>Ü&amp;ber Tidel Desktop</translation>
    </message>
    <message>
        <source>Tool Bar</source>
        <translation>Werkzeugleiste</translation>
    </message>
    <message>
        <source>Sa&amp;ve Search</source>
        <translation>Suche s&amp;peichern</translation>
    </message>
    <message>
        <source>Remove Sear&amp;ch</source>
        <translation>Su&amp;che entfernen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Show &amp;Icons of Websites</source>
        <translation>&amp;Symbole der Websites zeigen</translation>
    </message>
</context>
<context>
    <name>Tidel::ArticleHtml</name>
    <message>
        <source>updated %1</source>
        <translation>geändert am %1</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>No title</source>
        <translation>Ohne Titel</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Kommentare</translation>
    </message>
    <message>
        <source>Continue (%1 there)</source>
        <translation>Fortsetzen (%1 vorhanden)</translation>
    </message>
</context>
<context>
    <name>Tidel::ArticleView</name>
    <message>
        <source>Article</source>
        <translation>Artikel</translation>
    </message>
    <message>
        <source>&amp;Larger Text</source>
        <translation>&amp;Größere Schrift</translation>
    </message>
    <message>
        <source>Ctrl+=</source>
        <translation>Ctrl+=</translation>
    </message>
    <message>
        <source>&amp;Smaller Text</source>
        <translation>&amp;Kleinere Schrift</translation>
    </message>
    <message>
        <source>&amp;Usual Size of Text</source>
        <translation>&amp;Übliche Schriftgröße</translation>
    </message>
    <message>
        <source>Ctrl+0</source>
        <translation>Ctrl+0</translation>
    </message>
    <message>
        <source>Show &amp;Pictures of This Channel</source>
        <translation>&amp;Bilder dieses Kanals zeigen</translation>
    </message>
</context>
<context>
    <name>Tidel::ChannelEditing</name>
    <message numerus="yes">
        <source>%n message(s)</source>
        <translation>
            <numerusform>%n Nachricht</numerusform>
            <numerusform>%n Nachrichten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n of them favorite(s)</source>
        <translation>
            <numerusform>davon %n Favorit</numerusform>
            <numerusform>davon %n Favoriten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n downloaded file(s)</source>
        <translation>
            <numerusform>%n heruntergeladene Datei</numerusform>
            <numerusform>%n heruntergeladene Dateien</numerusform>
        </translation>
    </message>
    <message>
        <source>Move to Folder</source>
        <translation>In Ordner verschieben</translation>
    </message>
    <message>
        <source>Folder, such as News/World. Leave it empty for no folder.</source>
        <translation>Ordner, zum Beispiel Nachrichten/Welt. Leer lassen für keinen Ordner.</translation>
    </message>
    <message>
        <source>Unsubscribe</source>
        <translation>Abbestellen</translation>
    </message>
    <message>
        <source>Unsubscribe from “%1”?</source>
        <translation>„%1“ abbestellen?</translation>
    </message>
    <message>
        <source>This deletes %1. You can undo it until you close the window.</source>
        <translation>Das löscht %1. Sie können es rückgängig machen, bis Sie das Fenster schließen.</translation>
    </message>
    <message>
        <source>Keep the favorites</source>
        <translation>Favoriten behalten</translation>
    </message>
</context>
<context>
    <name>Tidel::ChannelModel</name>
    <message>
        <source>All messages</source>
        <translation>Alle Nachrichten</translation>
    </message>
    <message>
        <source>Unread</source>
        <translation>Ungelesen</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
</context>
<context>
    <name>Tidel::ChannelRows</name>
    <message>
        <source>%1 of %2 unread</source>
        <translation>%1 von %2 ungelesen</translation>
    </message>
    <message>
        <source>Could not be refreshed: %1</source>
        <translation>Konnte nicht aktualisiert werden: %1</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n unread</source>
        <translation>
            <numerusform>%1, %n ungelesen</numerusform>
            <numerusform>%1, %n ungelesen</numerusform>
        </translation>
    </message>
    <message>
        <source>Search: %1</source>
        <translation>Suche: %1</translation>
    </message>
</context>
<context>
    <name>Tidel::ChannelView</name>
    <message>
        <source>Channels</source>
        <translation>Kanäle</translation>
    </message>
</context>
<context>
    <name>Tidel::DownloadRow</name>
    <message>
        <source>%1 of %2 (%3%)</source>
        <translation>%1 von %2 (%3 %)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancel the download of %1</source>
        <translation>Herunterladen von %1 abbrechen</translation>
    </message>
    <message>
        <source>Progress of the download of %1</source>
        <translation>Fortschritt beim Herunterladen von %1</translation>
    </message>
</context>
<context>
    <name>Tidel::EnclosureDownloads</name>
    <message>
        <source>Could not download the file: %1</source>
        <translation>Konnte die Datei nicht herunterladen: %1</translation>
    </message>
</context>
<context>
    <name>Tidel::ImportExport</name>
    <message>
        <source>Import Channels</source>
        <translation>Kanäle importieren</translation>
    </message>
    <message>
        <source>Lists of channels (*.opml *.xml);;All files (*)</source>
        <translation>Listen von Kanälen (*.opml *.xml);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Export Channels</source>
        <translation>Kanäle exportieren</translation>
    </message>
    <message>
        <source>channels.opml</source>
        <translation>kanaele.opml</translation>
    </message>
    <message>
        <source>OPML (*.opml)</source>
        <translation>OPML (*.opml)</translation>
    </message>
    <message numerus="yes">
        <source>Exported %n channel(s)</source>
        <translation>
            <numerusform>%n Kanal exportiert</numerusform>
            <numerusform>%n Kanäle exportiert</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::KeysDialog</name>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
</context>
<context>
    <name>Tidel::LoginBox</name>
    <message>
        <source>The password is kept in %1, which nobody else can read, and is sent to this server only.</source>
        <translation>Das Passwort steht in %1, wo es niemand sonst lesen kann, und wird nur an diesen Server gesendet.</translation>
    </message>
    <message>
        <source>&amp;User:</source>
        <translation>&amp;Benutzer:</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Passwort:</translation>
    </message>
    <message>
        <source>Login at %1</source>
        <translation>Anmeldung bei %1</translation>
    </message>
</context>
<context>
    <name>Tidel::MainWindow</name>
    <message>
        <source>There are no unread messages</source>
        <translation>Es gibt keine ungelesenen Nachrichten</translation>
    </message>
    <message>
        <source>Refreshing...</source>
        <translation>Wird aktualisiert …</translation>
    </message>
    <message>
        <source>About Tidel Desktop</source>
        <translation>Über Tidel Desktop</translation>
    </message>
    <message>
        <source>Tidel Desktop %1
A reader of feeds for large archives.</source>
        <translation>Tidel Desktop %1
Liest Feeds, auch in großen Archiven.</translation>
    </message>
    <message>
        <source>Downloaded %1</source>
        <translation>%1 heruntergeladen</translation>
    </message>
    <message>
        <source>There are no channels yet.
Ctrl+N subscribes to the feed of a website. Ctrl+O imports the channels of another program.</source>
        <translation>Es gibt noch keine Kanäle.
Strg+N abonniert den Feed einer Website. Strg+O importiert die Kanäle eines anderen Programms.</translation>
    </message>
</context>
<context>
    <name>Tidel::Marks</name>
    <message numerus="yes">
        <source>Marked %n message(s) as read</source>
        <translation>
            <numerusform>%n Nachricht als gelesen markiert</numerusform>
            <numerusform>%n Nachrichten als gelesen markiert</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Mark %n Message(s) as Read</source>
        <translation>
            <numerusform>Markieren von %n Nachricht als gelesen</numerusform>
            <numerusform>Markieren von %n Nachrichten als gelesen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::MessageColumns</name>
    <message>
        <source>read</source>
        <translation>gelesen</translation>
    </message>
    <message>
        <source>unread</source>
        <translation>ungelesen</translation>
    </message>
    <message>
        <source>favorite</source>
        <translation>Favorit</translation>
    </message>
    <message>
        <source>no favorite</source>
        <translation>kein Favorit</translation>
    </message>
    <message>
        <source>Unread</source>
        <translation>Ungelesen</translation>
    </message>
    <message>
        <source>Favorite</source>
        <translation>Favorit</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Channel</source>
        <translation>Kanal</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Ohne Titel</translation>
    </message>
</context>
<context>
    <name>Tidel::MessagePane</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Search in %1</source>
        <translation>In %1 suchen</translation>
    </message>
    <message>
        <source>No messages</source>
        <translation>Keine Nachrichten</translation>
    </message>
    <message>
        <source>No message has these words</source>
        <translation>Keine Nachricht enthält diese Wörter</translation>
    </message>
</context>
<context>
    <name>Tidel::MessageView</name>
    <message>
        <source>Messages</source>
        <translation>Nachrichten</translation>
    </message>
</context>
<context>
    <name>Tidel::NoticeBar</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Hinweis</translation>
    </message>
</context>
<context>
    <name>Tidel::PendingRemovals</name>
    <message>
        <source>Unsubscribed from “%1”</source>
        <translation>„%1“ abbestellt</translation>
    </message>
    <message>
        <source>Unsubscribe from “%1”</source>
        <translation>Abbestellen von „%1“</translation>
    </message>
    <message numerus="yes">
        <source>Deleted %n message(s)</source>
        <translation>
            <numerusform>%n Nachricht gelöscht</numerusform>
            <numerusform>%n Nachrichten gelöscht</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n Message(s)</source>
        <translation>
            <numerusform>Löschen von %n Nachricht</numerusform>
            <numerusform>Löschen von %n Nachrichten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::PictureBar</name>
    <message>
        <source>Pictures were not fetched, so that nobody learns what you read.</source>
        <translation>Bilder wurden nicht geladen, damit niemand erfährt, was Sie lesen.</translation>
    </message>
    <message>
        <source>Show &amp;Pictures</source>
        <translation>&amp;Bilder zeigen</translation>
    </message>
    <message>
        <source>&amp;Always for This Channel</source>
        <translation>&amp;Immer für diesen Kanal</translation>
    </message>
</context>
<context>
    <name>Tidel::PropertiesDialog</name>
    <message>
        <source>As its server wishes</source>
        <translation>Wie der Server es wünscht</translation>
    </message>
    <message>
        <source>Every 15 minutes at most</source>
        <translation>Höchstens alle 15 Minuten</translation>
    </message>
    <message>
        <source>Hourly at most</source>
        <translation>Höchstens stündlich</translation>
    </message>
    <message>
        <source>Every 6 hours at most</source>
        <translation>Höchstens alle 6 Stunden</translation>
    </message>
    <message>
        <source>Daily at most</source>
        <translation>Höchstens täglich</translation>
    </message>
    <message>
        <source>Weekly at most</source>
        <translation>Höchstens wöchentlich</translation>
    </message>
    <message>
        <source>Unread ones, too</source>
        <translation>Auch ungelesene</translation>
    </message>
    <message>
        <source>Properties of %1</source>
        <translation>Eigenschaften von %1</translation>
    </message>
    <message>
        <source>Title:</source>
        <translation>Titel:</translation>
    </message>
    <message>
        <source>Address:</source>
        <translation>Adresse:</translation>
    </message>
    <message>
        <source>Website:</source>
        <translation>Website:</translation>
    </message>
    <message>
        <source>Last change:</source>
        <translation>Letzte Änderung:</translation>
    </message>
    <message>
        <source>Last refresh:</source>
        <translation>Letzte Aktualisierung:</translation>
    </message>
    <message>
        <source>without errors</source>
        <translation>ohne Fehler</translation>
    </message>
    <message numerus="yes">
        <source>Every %n second(s) at most</source>
        <translation>
            <numerusform>Höchstens jede Sekunde</numerusform>
            <numerusform>Höchstens alle %n Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Refresh:</source>
        <translation>A&amp;ktualisieren:</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>&amp;Newest messages to keep:</source>
        <translation>&amp;Neueste Nachrichten, die bleiben:</translation>
    </message>
    <message>
        <source>&amp;Days to keep messages:</source>
        <translation>&amp;Tage, die Nachrichten bleiben:</translation>
    </message>
    <message>
        <source>Delete older ones:</source>
        <translation>Ältere löschen:</translation>
    </message>
</context>
<context>
    <name>Tidel::RefreshStatus</name>
    <message>
        <source>Progress of the refresh</source>
        <translation>Fortschritt der Aktualisierung</translation>
    </message>
    <message>
        <source>%v of %m channels</source>
        <translation>%v von %m Kanälen</translation>
    </message>
</context>
<context>
    <name>Tidel::Refresher</name>
    <message>
        <source>Nothing could be refreshed: %1</source>
        <translation>Nichts konnte aktualisiert werden: %1</translation>
    </message>
    <message>
        <source>No new messages</source>
        <translation>Keine neuen Nachrichten</translation>
    </message>
    <message numerus="yes">
        <source>%n new message(s)</source>
        <translation>
            <numerusform>%n neue Nachricht</numerusform>
            <numerusform>%n neue Nachrichten</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source> in %n channel(s)</source>
        <translation>
            <numerusform> in %n Kanal</numerusform>
            <numerusform> in %n Kanälen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n channel(s) could not be refreshed</source>
        <translation>
            <numerusform>; %n Kanal konnte nicht aktualisiert werden</numerusform>
            <numerusform>; %n Kanäle konnten nicht aktualisiert werden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::SavedSearches</name>
    <message>
        <source>Removed the search “%1”</source>
        <translation>Suche „%1“ entfernt</translation>
    </message>
    <message>
        <source>Remove the Search “%1”</source>
        <translation>Entfernen der Suche „%1“</translation>
    </message>
</context>
<context>
    <name>Tidel::SubscribeDialog</name>
    <message>
        <source>Subscribe</source>
        <translation>Abonnieren</translation>
    </message>
    <message>
        <source>Address of a feed or of a web page</source>
        <translation>Adresse eines Feeds oder einer Webseite</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>Feeds of the page</source>
        <translation>Feeds der Seite</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Adresse:</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Ordner:</translation>
    </message>
    <message>
        <source>Looking for the feed...</source>
        <translation>Der Feed wird gesucht …</translation>
    </message>
    <message>
        <source>Could not subscribe: %1</source>
        <translation>Konnte nicht abonnieren: %1</translation>
    </message>
    <message>
        <source>This page has several feeds. Choose those that you want.</source>
        <translation>Diese Seite hat mehrere Feeds. Wählen Sie aus, welche Sie möchten.</translation>
    </message>
    <message>
        <source>This server asks who you are.</source>
        <translation>Dieser Server verlangt eine Anmeldung.</translation>
    </message>
    <message>
        <source>The server refuses this user or password.</source>
        <translation>Der Server lehnt diesen Benutzer oder dieses Passwort ab.</translation>
    </message>
</context>
<context>
    <name>Tidel::SubscriptionFiles</name>
    <message numerus="yes">
        <source>%n new channel(s)</source>
        <translation>
            <numerusform>%n neuer Kanal</numerusform>
            <numerusform>%n neue Kanäle</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n were there before</source>
        <translation>
            <numerusform>; %n war schon da</numerusform>
            <numerusform>; %n waren schon da</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n could not be read</source>
        <translation>
            <numerusform>; %n konnte nicht gelesen werden</numerusform>
            <numerusform>; %n konnten nicht gelesen werden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>A feed reader. It shows the archive that &quot;tidel&quot; works on.</source>
        <translation>Ein Feedreader. Er zeigt das Archiv, mit dem auch „tidel“ arbeitet.</translation>
    </message>
    <message>
        <source>tidel-desktop takes no arguments; see --help</source>
        <translation>tidel-desktop nimmt keine Argumente an; siehe --help</translation>
    </message>
</context>
</TS>
