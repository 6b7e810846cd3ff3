<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>QFile</name>
    <message>
        <source>NoError</source>
        <translation>KeinFehler</translation>
    </message>
    <message>
        <source>ReadError</source>
        <translation>LeseFehler</translation>
    </message>
    <message>
        <source>WriteError</source>
        <translation>SchreibFehler</translation>
    </message>
    <message>
        <source>FatalError</source>
        <translation>SchwerwiegenderFehler</translation>
    </message>
    <message>
        <source>ResourceError</source>
        <translation>RessourcenFehler</translation>
    </message>
    <message>
        <source>OpenError</source>
        <translation>ÖffnenFehler</translation>
    </message>
    <message>
        <source>AbortError</source>
        <translation>AbbruchFehler</translation>
    </message>
    <message>
        <source>TimeOutError</source>
        <translation>ZeitüberschreitungsFehler</translation>
    </message>
    <message>
        <source>UnspecifiedError</source>
        <translation>UnbezeichneterFehler</translation>
    </message>
    <message>
        <source>RemoveError</source>
        <translation>EntfernenFehler</translation>
    </message>
    <message>
        <source>RenameError</source>
        <translation>UmbenennenFehler</translation>
    </message>
    <message>
        <source>PositionError</source>
        <translation>PositionsFehler</translation>
    </message>
    <message>
        <source>ResizeError</source>
        <translation>GrößenänderungsFehler</translation>
    </message>
    <message>
        <source>PermissionsError</source>
        <translation>RechteFehler</translation>
    </message>
    <message>
        <source>CopyError</source>
        <translation>KopierenFehler</translation>
    </message>
</context>
<context>
    <name>QTextStream</name>
    <message>
        <source>Ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>ReadPastEnd</source>
        <translation>ÜberEndeGelesen</translation>
    </message>
    <message>
        <source>ReadCorruptData</source>
        <translation>FehlerhafteDatenGelesen</translation>
    </message>
    <message>
        <source>UnknownError</source>
        <translation>UnbekannterFehler</translation>
    </message>
</context>
<context>
    <name>Statics</name>
    <message>
        <source>All Events</source>
        <translation>Alle Ereignisse</translation>
    </message>
    <message>
        <source>Video Motion (VM)</source>
        <translation>Video-Bewegungsmelder (VM)</translation>
    </message>
    <message>
        <source>Video Motion 2 (VM2)</source>
        <translation>Video-Bewegungsmelder 2 (VM2)</translation>
    </message>
    <message>
        <source>Passive Infrared (PI)</source>
        <translation>Passiv-Infrarot (PI)</translation>
    </message>
    <message>
        <source>Illumination (IL)</source>
        <translation>Beleuchtung (IL)</translation>
    </message>
    <message>
        <source>Illumination (IL2)</source>
        <translation>Beleuchtung (IL2)</translation>
    </message>
    <message>
        <source>Microphone (MI)</source>
        <translation>Mikrofon (MI)</translation>
    </message>
    <message>
        <source>Temperature (TP)</source>
        <translation>Temperatur (TP)</translation>
    </message>
    <message>
        <source>User Click (UC)</source>
        <translation>Benutzerklick (UC)</translation>
    </message>
    <message>
        <source>Button (BT)</source>
        <translation>Taste (BT)</translation>
    </message>
    <message>
        <source>Right Button (BR)</source>
        <translation>Rechte Taste (BR)</translation>
    </message>
    <message>
        <source>Left Button (BL)</source>
        <translation>Linke Taste (BL)</translation>
    </message>
    <message>
        <source>IR Remote Control (IR)</source>
        <translation>IR-Fernbedienung (IR)</translation>
    </message>
    <message>
        <source>Signal Input 1 (SI)</source>
        <translation>Signaleingang (SI)</translation>
    </message>
    <message>
        <source>Signal Input 2 (SI2)</source>
        <translation>Signaleingang 2 (SI2)</translation>
    </message>
    <message>
        <source>Signal Input 3 (SI3)</source>
        <translation>Signaleingang 3 (SI3)</translation>
    </message>
    <message>
        <source>Signal Input 4 (SI4)</source>
        <translation>Signaleingang 4 (SI4)</translation>
    </message>
    <message>
        <source>Signal Input 5 (SI4)</source>
        <translation>Signaleingang 5 (SI4)</translation>
    </message>
    <message>
        <source>Signal Input 6 (SI6)</source>
        <translation>Signaleingang 6 (SI6)</translation>
    </message>
    <message>
        <source>Signal Input 7 (SI7)</source>
        <translation>Signaleingang 7 (SI7)</translation>
    </message>
    <message>
        <source>Signal Input 8 (SI8)</source>
        <translation>Signaleingang 8 (SI8)</translation>
    </message>
    <message>
        <source>Signal Input 9 (SI9)</source>
        <translation>Signaleingang 9 (SI9)</translation>
    </message>
    <message>
        <source>Signal Input 10 (SI10)</source>
        <translation>Signaleingang 10 (SI10)</translation>
    </message>
    <message>
        <source>Signal Input 11 (SI11)</source>
        <translation>Signaleingang 11 (SI11)</translation>
    </message>
    <message>
        <source>Signal Input 12 (SI12)</source>
        <translation>Signaleingang 12 (SI12)</translation>
    </message>
    <message>
        <source>Signal Input 13 (SI13)</source>
        <translation>Signaleingang 13 (SI13)</translation>
    </message>
    <message>
        <source>Signal Input 14 (SI14)</source>
        <translation>Signaleingang 14 (SI14)</translation>
    </message>
    <message>
        <source>Signal Input 15 (SI15)</source>
        <translation>Signaleingang 15 (SI15)</translation>
    </message>
    <message>
        <source>Signal Input 16 (SI16)</source>
        <translation>Signaleingang 16 (SI16)</translation>
    </message>
    <message>
        <source>IP Receive (RC)</source>
        <translation>IP-Empfang (RC)</translation>
    </message>
    <message>
        <source>Serial Interface (CI)</source>
        <translation>Serielle Schnittstelle (CI)</translation>
    </message>
    <message>
        <source>Periodic Event (PE)</source>
        <translation>Periodisches Ereignis (PE)</translation>
    </message>
    <message>
        <source>Time Task (TT)</source>
        <translation>Zeitgesteuerte Aufgabe (TT)</translation>
    </message>
    <message>
        <source>Random Event (RD)</source>
        <translation>Zufallsereignis (RD)</translation>
    </message>
    <message>
        <source>Event Counter (EC)</source>
        <translation>Ereigniszähler (EC)</translation>
    </message>
    <message>
        <source>Event Logic (EL)</source>
        <translation>Ereignislogik (EL)</translation>
    </message>
    <message>
        <source>Event Logic 2 (EL2)</source>
        <translation>Ereignislogik 2 (EL2)</translation>
    </message>
    <message>
        <source>Recording Begin (RB)</source>
        <translation>Aufzeichnungsbeginn (RB)</translation>
    </message>
    <message>
        <source>Recording End (RE)</source>
        <translation>Aufzeichnungsende (RE)</translation>
    </message>
    <message>
        <source>Recording History (RH)</source>
        <translation>Aufzeichnungsverlauf (RH)</translation>
    </message>
    <message>
        <source>Recording Terminate (RT)</source>
        <translation>Aufzeichnungsabbruch (RT)</translation>
    </message>
    <message>
        <source>Camera Bell Pressed</source>
        <translation>Kameraklingel betätigt</translation>
    </message>
    <message>
        <source>Bell Pressed</source>
        <translation>Klingel betätigt</translation>
    </message>
    <message>
        <source>Door Opened</source>
        <translation>Tür geöffnet</translation>
    </message>
    <message>
        <source>Access Granted</source>
        <translation>Zutritt gewährt</translation>
    </message>
    <message>
        <source>Invalid RFID</source>
        <translation>Ungültige RFID</translation>
    </message>
    <message>
        <source>Invalid PIN</source>
        <translation>Ungültige PIN</translation>
    </message>
    <message>
        <source>Connection Lost</source>
        <translation>Verbindung unterbrochen</translation>
    </message>
    <message>
        <source>Mailbox Message</source>
        <translation>Mailbox-Nachricht</translation>
    </message>
    <message>
        <source>End of Message</source>
        <translation>Nachrichtenende</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beide</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Left in Right</source>
        <translation>Links in Rechts</translation>
    </message>
    <message>
        <source>Right in Left</source>
        <translation>Rechts in Links</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Bildqualität</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Bildrate</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Automatic (Narrow)</source>
        <translation>Automatisch (eng)</translation>
    </message>
    <message>
        <source>Cloudy/Hazy</source>
        <translation>Bewölkt/Dunstig</translation>
    </message>
    <message>
        <source>Indoor</source>
        <translation>Innen</translation>
    </message>
    <message>
        <source>Indoor 2</source>
        <translation>Innen 2</translation>
    </message>
    <message>
        <source>Outdoor</source>
        <translation>Außen</translation>
    </message>
    <message>
        <source>Outdoor 2</source>
        <translation>Außen 2</translation>
    </message>
    <message>
        <source>Sunny</source>
        <translation>Sonnig</translation>
    </message>
    <message>
        <source>Fluorescent Lamp</source>
        <translation>Leuchtstofflampe</translation>
    </message>
    <message>
        <source>Incandescent Lamp</source>
        <translation>Glühlampe</translation>
    </message>
    <message>
        <source>Incandescent Lamp 2</source>
        <translation>Glühlampe 2</translation>
    </message>
    <message>
        <source>Gray World</source>
        <translation>Grauwelt</translation>
    </message>
    <message>
        <source>Hold Current</source>
        <translation>Aktuellen Wert halten</translation>
    </message>
    <message>
        <source>5 lux</source>
        <translation>5 lux</translation>
    </message>
    <message>
        <source>3 lux</source>
        <translation>3 lux</translation>
    </message>
    <message>
        <source>1 lux</source>
        <translation>1 lux</translation>
    </message>
    <message>
        <source>0.5 lux</source>
        <translation>0,5 lux</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Simple</source>
        <translation>Einfach</translation>
    </message>
    <message>
        <source>Adaptive</source>
        <translation>Adaptiv</translation>
    </message>
    <message>
        <source>KoPEG</source>
        <translation>KoPEG</translation>
    </message>
    <message>
        <source>M-JPEG</source>
        <translation>M-JPEG</translation>
    </message>
    <message>
        <source>ExtIO</source>
        <translation>ExtIO</translation>
    </message>
    <message>
        <source>Low sensitivity</source>
        <translation>Niedrige Empfindlichkeit</translation>
    </message>
    <message>
        <source>Medium sensitivity</source>
        <translation>Mittlere Empfindlichkeit</translation>
    </message>
    <message>
        <source>High sensitivity</source>
        <translation>Hohe Empfindlichkeit</translation>
    </message>
    <message>
        <source>Full Image</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Quarter</source>
        <translation>Viertel</translation>
    </message>
    <message>
        <source>Center</source>
        <translation>Zentrum</translation>
    </message>
    <message>
        <source>Spot</source>
        <translation>Spot</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Unten</translation>
    </message>
    <message>
        <source>Middle</source>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Vertical</source>
        <translation>Vertikal</translation>
    </message>
    <message>
        <source>Right &amp; Left</source>
        <translation>Rechts &amp; Links</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Benutzerdefiniert</translation>
    </message>
    <message>
        <source>Picture in Zoom</source>
        <translation>Bild im Zoom</translation>
    </message>
    <message>
        <source>Picture in Picture</source>
        <translation>Bild im Bild</translation>
    </message>
    <message>
        <source>Event in Picture</source>
        <translation>Ereignis im Bild</translation>
    </message>
    <message>
        <source>Fisheye</source>
        <translation>Fischauge</translation>
    </message>
    <message>
        <source>Lens Correction</source>
        <translation>Objektivkorrektur</translation>
    </message>
    <message>
        <source>Surround</source>
        <translation>Surround</translation>
    </message>
    <message>
        <source>Panorama</source>
        <translation>Panorama</translation>
    </message>
    <message>
        <source>Panorama Focus</source>
        <translation>Panorama-Fokus</translation>
    </message>
    <message>
        <source>Double Panorama</source>
        <translation>Doppelpanorama</translation>
    </message>
    <message>
        <source>Unchanged</source>
        <translation>Unverändert</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>PDA (160x120)</source>
        <translation>PDA (160x120)</translation>
    </message>
    <message>
        <source>CIF (320x240)</source>
        <translation>CIF (320x240)</translation>
    </message>
    <message>
        <source>TV-CIF (352x288)</source>
        <translation>TV-CIF (352x288)</translation>
    </message>
    <message>
        <source>D-1 CIF (384x288)</source>
        <translation>D-1 CIF (384x288)</translation>
    </message>
    <message>
        <source>VGA (640x480)</source>
        <translation>VGA (640x480)</translation>
    </message>
    <message>
        <source>D-1 PAL (768x576)</source>
        <translation>D-1 PAL (768x576)</translation>
    </message>
    <message>
        <source>SVGA (800x600)</source>
        <translation>SVGA (800x600)</translation>
    </message>
    <message>
        <source>XGA (1024x768)</source>
        <translation>XGA (1024x768)</translation>
    </message>
    <message>
        <source>Mega (1280x960)</source>
        <translation>Mega (1280x960)</translation>
    </message>
    <message>
        <source>QXGA (2048x1536)</source>
        <translation>QXGA (2048x1536)</translation>
    </message>
    <message>
        <source>PTZ</source>
        <translation>PTZ</translation>
    </message>
    <message>
        <source>QCIF (176x144)</source>
        <translation>QCIF (176x144)</translation>
    </message>
    <message>
        <source>TV-PAL (704x576)</source>
        <translation>TV-PAL (704x576)</translation>
    </message>
    <message>
        <source>2CIF Exp (704x576)</source>
        <translation>2CIF Exp (704x576)</translation>
    </message>
    <message>
        <source>2CIF (704x288)</source>
        <translation>2CIF (704x288)</translation>
    </message>
    <message>
        <source>4CIF (704x576)</source>
        <translation>4CIF (704x576)</translation>
    </message>
    <message>
        <source>SXGA (1280x1024)</source>
        <translation>SXGA (1280x1024)</translation>
    </message>
    <message>
        <source>HD 720 (1280x720)</source>
        <translation>HD 720 (1280x720)</translation>
    </message>
    <message>
        <source>1/8 VGA (240x180)</source>
        <translation>1/8 VGA (240x180)</translation>
    </message>
    <message>
        <source>Custom Size</source>
        <translation>Benutzerdefinierte Größe</translation>
    </message>
    <message>
        <source>???</source>
        <translation>???</translation>
    </message>
</context>
</TS>
