<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
    <name>QFile</name>
    <message>
        <source>NoError</source>
        <translation>PasDErreur</translation>
    </message>
    <message>
        <source>ReadError</source>
        <translation>ErreurLecture</translation>
    </message>
    <message>
        <source>WriteError</source>
        <translation>ErreurEcriture</translation>
    </message>
    <message>
        <source>FatalError</source>
        <translation>ErreurFatale</translation>
    </message>
    <message>
        <source>ResourceError</source>
        <translation>ErreurRessource</translation>
    </message>
    <message>
        <source>OpenError</source>
        <translation>ErreurOuvrir</translation>
    </message>
    <message>
        <source>AbortError</source>
        <translation>ErreurAnnulation</translation>
    </message>
    <message>
        <source>TimeOutError</source>
        <translation>ErreurDélaiDAttente</translation>
    </message>
    <message>
        <source>UnspecifiedError</source>
        <translation>ErreurNonSpécifié</translation>
    </message>
    <message>
        <source>RemoveError</source>
        <translation>ErreurSuppression</translation>
    </message>
    <message>
        <source>RenameError</source>
        <translation>ErreurRenommer</translation>
    </message>
    <message>
        <source>PositionError</source>
        <translation>ErreurPosition</translation>
    </message>
    <message>
        <source>ResizeError</source>
        <translation>ErreurModificationTaille</translation>
    </message>
    <message>
        <source>PermissionsError</source>
        <translation>ErreurPermissions</translation>
    </message>
    <message>
        <source>CopyError</source>
        <translation>ErreurCopier</translation>
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
        <translation>LectureAuDélaFin</translation>
    </message>
    <message>
        <source>ReadCorruptData</source>
        <translation>LectureDonnéesErronées</translation>
    </message>
    <message>
        <source>UnknownError</source>
        <translation>ErreurInconnue</translation>
    </message>
</context>
<context>
    <name>Statics</name>
    <message>
        <source>All Events</source>
        <translation>Tous les événements</translation>
    </message>
    <message>
        <source>Video Motion (VM)</source>
        <translation>Mouvement vidéo (VM)</translation>
    </message>
    <message>
        <source>Video Motion 2 (VM2)</source>
        <translation>Mouvement vidéo 2 (VM2)</translation>
    </message>
    <message>
        <source>Passive Infrared (PI)</source>
        <translation>Infrarouge passif (PI)</translation>
    </message>
    <message>
        <source>Illumination (IL)</source>
        <translation>Éclairage (IL)</translation>
    </message>
    <message>
        <source>Illumination (IL2)</source>
        <translation>Éclairage (IL2)</translation>
    </message>
    <message>
        <source>Microphone (MI)</source>
        <translation>Microphone (MI)</translation>
    </message>
    <message>
        <source>Temperature (TP)</source>
        <translation>Température (TP)</translation>
    </message>
    <message>
        <source>User Click (UC)</source>
        <translation>Clic utilisateur (UC)</translation>
    </message>
    <message>
        <source>Button (BT)</source>
        <translation>Bouton (BT)</translation>
    </message>
    <message>
        <source>Right Button (BR)</source>
        <translation>Bouton droit (BR)</translation>
    </message>
    <message>
        <source>Left Button (BL)</source>
        <translation>Bouton gauche (BL)</translation>
    </message>
    <message>
        <source>IR Remote Control (IR)</source>
        <translation>Télécommande IR (IR)</translation>
    </message>
    <message>
        <source>Signal Input 1 (SI)</source>
        <translation>Signal d&apos;entrée (SI)</translation>
    </message>
    <message>
        <source>Signal Input 2 (SI2)</source>
        <translation>Signal d&apos;entrée 2 (SI2)</translation>
    </message>
    <message>
        <source>Signal Input 3 (SI3)</source>
        <translation>Signal d&apos;entrée 3 (SI3)</translation>
    </message>
    <message>
        <source>Signal Input 4 (SI4)</source>
        <translation>Signal d&apos;entrée 4 (SI4)</translation>
    </message>
    <message>
        <source>Signal Input 5 (SI4)</source>
        <translation>Signal d&apos;entrée 5 (SI4)</translation>
    </message>
    <message>
        <source>Signal Input 6 (SI6)</source>
        <translation>Signal d&apos;entrée 6 (SI6)</translation>
    </message>
    <message>
        <source>Signal Input 7 (SI7)</source>
        <translation>Signal d&apos;entrée 7 (SI7)</translation>
    </message>
    <message>
        <source>Signal Input 8 (SI8)</source>
        <translation>Signal d&apos;entrée 8 (SI8)</translation>
    </message>
    <message>
        <source>Signal Input 9 (SI9)</source>
        <translation>Signal d&apos;entrée 9 (SI9)</translation>
    </message>
    <message>
        <source>Signal Input 10 (SI10)</source>
        <translation>Signal d&apos;entrée 10 (SI10)</translation>
    </message>
    <message>
        <source>Signal Input 11 (SI11)</source>
        <translation>Signal d&apos;entrée 11 (SI11)</translation>
    </message>
    <message>
        <source>Signal Input 12 (SI12)</source>
        <translation>Signal d&apos;entrée 12 (SI12)</translation>
    </message>
    <message>
        <source>Signal Input 13 (SI13)</source>
        <translation>Signal d&apos;entrée 13 (SI13)</translation>
    </message>
    <message>
        <source>Signal Input 14 (SI14)</source>
        <translation>Signal d&apos;entrée 14 (SI14)</translation>
    </message>
    <message>
        <source>Signal Input 15 (SI15)</source>
        <translation>Signal d&apos;entrée 15 (SI15)</translation>
    </message>
    <message>
        <source>Signal Input 16 (SI16)</source>
        <translation>Signal d&apos;entrée 16 (SI16)</translation>
    </message>
    <message>
        <source>IP Receive (RC)</source>
        <translation>Réception IP (RC)</translation>
    </message>
    <message>
        <source>Serial Interface (CI)</source>
        <translation>Interface série (CI)</translation>
    </message>
    <message>
        <source>Periodic Event (PE)</source>
        <translation>Événement périodique (PE)</translation>
    </message>
    <message>
        <source>Time Task (TT)</source>
        <translation>Tâche planifiée (TT)</translation>
    </message>
    <message>
        <source>Random Event (RD)</source>
        <translation>Événement aléatoire (RD)</translation>
    </message>
    <message>
        <source>Event Counter (EC)</source>
        <translation>Compteur d&apos;événements (EC)</translation>
    </message>
    <message>
        <source>Event Logic (EL)</source>
        <translation>Logique d&apos;événements (EL)</translation>
    </message>
    <message>
        <source>Event Logic 2 (EL2)</source>
        <translation>Logique d&apos;événements 2 (EL2)</translation>
    </message>
    <message>
        <source>Recording Begin (RB)</source>
        <translation>Début d&apos;enregistrement (RB)</translation>
    </message>
    <message>
        <source>Recording End (RE)</source>
        <translation>Fin d&apos;enregistrement (RE)</translation>
    </message>
    <message>
        <source>Recording History (RH)</source>
        <translation>Historique d&apos;enregistrement (RH)</translation>
    </message>
    <message>
        <source>Recording Terminate (RT)</source>
        <translation>Interruption d&apos;enregistrement (RT)</translation>
    </message>
    <message>
        <source>Camera Bell Pressed</source>
        <translation>Sonnette de la caméra actionnée</translation>
    </message>
    <message>
        <source>Bell Pressed</source>
        <translation>Sonnette actionnée</translation>
    </message>
    <message>
        <source>Door Opened</source>
        <translation>Porte ouverte</translation>
    </message>
    <message>
        <source>Access Granted</source>
        <translation>Accès autorisé</translation>
    </message>
    <message>
        <source>Invalid RFID</source>
        <translation>RFID non valide</translation>
    </message>
    <message>
        <source>Invalid PIN</source>
        <translation>PIN non valide</translation>
    </message>
    <message>
        <source>Connection Lost</source>
        <translation>Connexion perdue</translation>
    </message>
    <message>
        <source>Mailbox Message</source>
        <translation>Message de boîte de réception</translation>
    </message>
    <message>
        <source>End of Message</source>
        <translation>Fin du message</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Droite</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Gauche</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Les deux</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Left in Right</source>
        <translation>Gauche dans droite</translation>
    </message>
    <message>
        <source>Right in Left</source>
        <translation>Droite dans gauche</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualité</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Vitesse</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Désactivé</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Activé</translation>
    </message>
    <message>
        <source>Automatic (Narrow)</source>
        <translation>Automatique (étroite)</translation>
    </message>
    <message>
        <source>Cloudy/Hazy</source>
        <translation>Nuageux/Brumeux</translation>
    </message>
    <message>
        <source>Indoor</source>
        <translation>Intérieur</translation>
    </message>
    <message>
        <source>Indoor 2</source>
        <translation>Intérieur 2</translation>
    </message>
    <message>
        <source>Outdoor</source>
        <translation>Extérieur</translation>
    </message>
    <message>
        <source>Outdoor 2</source>
        <translation>Extérieur 2</translation>
    </message>
    <message>
        <source>Sunny</source>
        <translation>Ensoleillé</translation>
    </message>
    <message>
        <source>Fluorescent Lamp</source>
        <translation>Lampe fluorescente</translation>
    </message>
    <message>
        <source>Incandescent Lamp</source>
        <translation>Lampe à incandescence</translation>
    </message>
    <message>
        <source>Incandescent Lamp 2</source>
        <translation>Lampe à incandescence 2</translation>
    </message>
    <message>
        <source>Gray World</source>
        <translation>Monde gris</translation>
    </message>
    <message>
        <source>Hold Current</source>
        <translation>Conserver la valeur actuelle</translation>
    </message>
    <message>
        <source>5 lux</source>
        <translation>5&#xa0;lux</translation>
    </message>
    <message>
        <source>3 lux</source>
        <translation>3&#xa0;lux</translation>
    </message>
    <message>
        <source>1 lux</source>
        <translation>1&#xa0;lux</translation>
    </message>
    <message>
        <source>0.5 lux</source>
        <translation>0,5&#xa0;lux</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Faible</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Élevé</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Moyen</translation>
    </message>
    <message>
        <source>Simple</source>
        <translation>Simple</translation>
    </message>
    <message>
        <source>Adaptive</source>
        <translation>Adaptatif</translation>
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
        <translation>Sensibilité faible</translation>
    </message>
    <message>
        <source>Medium sensitivity</source>
        <translation>Sensibilité moyenne</translation>
    </message>
    <message>
        <source>High sensitivity</source>
        <translation>Sensibilité élevée</translation>
    </message>
    <message>
        <source>Full Image</source>
        <translation>Image entière</translation>
    </message>
    <message>
        <source>Quarter</source>
        <translation>Quart</translation>
    </message>
    <message>
        <source>Center</source>
        <translation>Centre</translation>
    </message>
    <message>
        <source>Spot</source>
        <translation>Spot</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Bas</translation>
    </message>
    <message>
        <source>Middle</source>
        <translation>Milieu</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Haut</translation>
    </message>
    <message>
        <source>Vertical</source>
        <translation>Vertical</translation>
    </message>
    <message>
        <source>Right &amp; Left</source>
        <translation>Droite et gauche</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Personnalisé</translation>
    </message>
    <message>
        <source>Picture in Zoom</source>
        <translation>Image dans le zoom</translation>
    </message>
    <message>
        <source>Picture in Picture</source>
        <translation>Image dans l&apos;image</translation>
    </message>
    <message>
        <source>Event in Picture</source>
        <translation>Événement dans l&apos;image</translation>
    </message>
    <message>
        <source>Fisheye</source>
        <translation>Fisheye</translation>
    </message>
    <message>
        <source>Lens Correction</source>
        <translation>Correction d&apos;objectif</translation>
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
        <translation>Focus panoramique</translation>
    </message>
    <message>
        <source>Double Panorama</source>
        <translation>Double panorama</translation>
    </message>
    <message>
        <source>Unchanged</source>
        <translation>Inchangé</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Zone</translation>
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
        <translation>Méga (1280x960)</translation>
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
        <translation>Taille personnalisée</translation>
    </message>
    <message>
        <source>???</source>
        <translation>???</translation>
    </message>
</context>
</TS>
