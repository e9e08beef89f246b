<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Tidel::ChannelEditing</name>
    <message numerus="yes">
        <source>%n message(s)</source>
        <translation>
            <numerusform>%n message</numerusform>
            <numerusform>%n messages</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n of them favorite(s)</source>
        <translation>
            <numerusform>%n of them a favorite</numerusform>
            <numerusform>%n of them favorites</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n downloaded file(s)</source>
        <translation>
            <numerusform>%n downloaded file</numerusform>
            <numerusform>%n downloaded files</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::ChannelRows</name>
    <message numerus="yes">
        <source>%1, %n unread</source>
        <translation>
            <numerusform>%1, %n unread</numerusform>
            <numerusform>%1, %n unread</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::ImportExport</name>
    <message numerus="yes">
        <source>Exported %n channel(s)</source>
        <translation>
            <numerusform>Exported %n channel</numerusform>
            <numerusform>Exported %n channels</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::Marks</name>
    <message numerus="yes">
        <source>Marked %n message(s) as read</source>
        <translation>
            <numerusform>Marked %n message as read</numerusform>
            <numerusform>Marked %n messages as read</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Mark %n Message(s) as Read</source>
        <translation>
            <numerusform>Mark %n Message as Read</numerusform>
            <numerusform>Mark %n Messages as Read</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::PendingRemovals</name>
    <message numerus="yes">
        <source>Deleted %n message(s)</source>
        <translation>
            <numerusform>Deleted %n message</numerusform>
            <numerusform>Deleted %n messages</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n Message(s)</source>
        <translation>
            <numerusform>Delete %n Message</numerusform>
            <numerusform>Delete %n Messages</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::PropertiesDialog</name>
    <message numerus="yes">
        <source>Every %n second(s) at most</source>
        <translation>
            <numerusform>Every second at most</numerusform>
            <numerusform>Every %n seconds at most</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::Refresher</name>
    <message numerus="yes">
        <source>%n new message(s)</source>
        <translation>
            <numerusform>%n new message</numerusform>
            <numerusform>%n new messages</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source> in %n channel(s)</source>
        <translation>
            <numerusform> in %n channel</numerusform>
            <numerusform> in %n channels</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n channel(s) could not be refreshed</source>
        <translation>
            <numerusform>; %n channel could not be refreshed</numerusform>
            <numerusform>; %n channels could not be refreshed</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Tidel::SubscriptionFiles</name>
    <message numerus="yes">
        <source>%n new channel(s)</source>
        <translation>
            <numerusform>%n new channel</numerusform>
            <numerusform>%n new channels</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n were there before</source>
        <translation>
            <numerusform>; %n was there before</numerusform>
            <numerusform>; %n were there before</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n could not be read</source>
        <translation>
            <numerusform>; %n could not be read</numerusform>
            <numerusform>; %n could not be read</numerusform>
        </translation>
    </message>
</context>
</TS>
