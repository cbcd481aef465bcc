<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>About</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Live Arabic &amp; international news channels in your menu bar. Free, no account needed.</source>
        <translation>L’info arabe et internationale en direct dans la barre de menus. Gratuit, sans compte.</translation>
    </message>
    <message>
        <source>About Orvane</source>
        <translation>À propos d’Orvane</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>&quot;%1&quot; is the name of several channels; use one of these ids:</source>
        <translation>«&#xa0;%1&#xa0;» est le nom de plusieurs chaînes&#xa0;; utilisez l’un de ces identifiants&#xa0;:</translation>
    </message>
    <message>
        <source>there is no channel &quot;%1&quot;; orvane --list prints all channels</source>
        <translation>il n’y a pas de chaîne «&#xa0;%1&#xa0;»&#xa0;; orvane --list affiche toutes les chaînes</translation>
    </message>
    <message>
        <source>there is no channel &quot;%1&quot;; similar ones:</source>
        <translation>il n’y a pas de chaîne «&#xa0;%1&#xa0;»&#xa0;; des noms proches&#xa0;:</translation>
    </message>
    <message>
        <source>play this channel, by its id or one of its names</source>
        <translation>lire cette chaîne, par son identifiant ou l’un de ses noms</translation>
    </message>
    <message>
        <source>play the next enabled channel</source>
        <translation>lire la chaîne activée suivante</translation>
    </message>
    <message>
        <source>play the previous enabled channel</source>
        <translation>lire la chaîne activée précédente</translation>
    </message>
    <message>
        <source>mute or unmute</source>
        <translation>couper ou rétablir le son</translation>
    </message>
    <message>
        <source>turn ghost mode on or off</source>
        <translation>activer ou désactiver le mode fantôme</translation>
    </message>
    <message>
        <source>open the settings</source>
        <translation>ouvrir les réglages</translation>
    </message>
    <message>
        <source>look up a link, handle or name to add; &quot;&quot; to be asked</source>
        <translation>chercher un lien, un identifiant ou un nom à ajouter&#xa0;; &quot;&quot; pour le saisir</translation>
    </message>
    <message>
        <source>quit the running Orvane; if there is none, do nothing</source>
        <translation>quitter Orvane s’il est lancé, sinon ne rien faire</translation>
    </message>
    <message>
        <source>print id, category and name of every channel</source>
        <translation>afficher l’identifiant, la catégorie et le nom de chaque chaîne</translation>
    </message>
    <message>
        <source>with --list: as JSON</source>
        <translation>avec --list&#xa0;: en JSON</translation>
    </message>
    <message>
        <source>log to the standard error, for the copy that this starts</source>
        <translation>écrire le journal sur l’erreur standard, pour l’instance lancée ainsi</translation>
    </message>
    <message>
        <source>print the version of Orvane and of what it uses</source>
        <translation>afficher la version d’Orvane et de ce qu’il utilise</translation>
    </message>
    <message>
        <source>print this help</source>
        <translation>afficher cette aide</translation>
    </message>
    <message>
        <source>unexpected argument &quot;%1&quot;</source>
        <translation>argument inattendu «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>%1; did you mean %2?</source>
        <translation>%1&#xa0;; vouliez-vous dire %2&#xa0;?</translation>
    </message>
    <message>
        <source>missing value after &quot;%1&quot;</source>
        <translation>valeur manquante après «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>unexpected value after &quot;%1&quot;</source>
        <translation>valeur inattendue après «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>--json needs --list</source>
        <translation>--json nécessite --list</translation>
    </message>
    <message>
        <source>--list can only be combined with --json</source>
        <translation>--list ne peut être combiné qu’avec --json</translation>
    </message>
    <message>
        <source>--quit cannot be combined with other options</source>
        <translation>--quit ne peut pas être combiné avec d’autres options</translation>
    </message>
    <message>
        <source>Usage: orvane [OPTIONS]

Plays live channels in a small window. While it runs, starting it again shows
that window, and the running copy carries out the options in their order.</source>
        <translation>Utilisation&#xa0;: orvane [OPTIONS]

Affiche des chaînes en direct dans une petite fenêtre. S’il est déjà lancé, le
relancer montre cette fenêtre, et l’instance lancée exécute les options dans
leur ordre.</translation>
    </message>
    <message>
        <source>Exit codes: 0 done, 1 failed, 2 not understood or no such channel.</source>
        <translation>Codes de sortie&#xa0;: 0 fait, 1 échec, 2 incompris ou chaîne inexistante.</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>introuvable</translation>
    </message>
    <message>
        <source>no answer from %1</source>
        <translation>pas de réponse de %1</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnue</translation>
    </message>
    <message>
        <source>%1 %2
commit %3
Qt %4
libmpv client API %5
yt-dlp %6
</source>
        <translation>%1 %2
commit %3
Qt %4
API client de libmpv %5
yt-dlp %6
</translation>
    </message>
    <message>
        <source>the options are too long</source>
        <translation>les options sont trop longues</translation>
    </message>
    <message>
        <source>another version of Orvane is running and does not know these options; quit it first</source>
        <translation>une autre version d’Orvane est lancée et ne connaît pas ces options&#xa0;; quittez-la d’abord</translation>
    </message>
    <message>
        <source>Orvane is running but does not answer</source>
        <translation>Orvane est lancé mais ne répond pas</translation>
    </message>
    <message>
        <source>neither XDG_RUNTIME_DIR nor the folder for temporary files is usable, so Orvane cannot check whether it is already running</source>
        <translation>ni XDG_RUNTIME_DIR ni le dossier des fichiers temporaires ne sont utilisables, Orvane ne peut donc pas vérifier s’il est déjà lancé</translation>
    </message>
    <message>
        <source>Try orvane --help.</source>
        <translation>Essayez orvane --help.</translation>
    </message>
    <message>
        <source>only %1 files may be open at the same time, and Orvane needs %2 (ulimit -n)</source>
        <translation>seuls %1 fichiers peuvent être ouverts en même temps, et Orvane en a besoin de %2 (ulimit -n)</translation>
    </message>
    <message>
        <source>only %1 more threads can be started, and Orvane needs %2 (ulimit -u)</source>
        <translation>seuls %1 fils d’exécution de plus peuvent être lancés, et Orvane en a besoin de %2 (ulimit -u)</translation>
    </message>
    <message>
        <source>there is no display; neither DISPLAY nor WAYLAND_DISPLAY is set</source>
        <translation>il n’y a pas d’affichage&#xa0;; ni DISPLAY ni WAYLAND_DISPLAY ne sont définis</translation>
    </message>
    <message>
        <source>this Wayland session has no XWayland (DISPLAY is not set), which Orvane needs to place its window and to keep it above others; QT_QPA_PLATFORM=wayland starts it without that</source>
        <translation>cette session Wayland n’a pas XWayland (DISPLAY n’est pas défini), dont Orvane a besoin pour placer sa fenêtre et la garder au-dessus des autres&#xa0;; QT_QPA_PLATFORM=wayland le lance sans cela</translation>
    </message>
    <message>
        <source>the display &quot;%1&quot; cannot be reached</source>
        <translation>l’affichage «&#xa0;%1&#xa0;» est injoignable</translation>
    </message>
    <message>
        <source>in this Wayland session Orvane runs through XWayland: in ghost mode its keys are heard only while an X11 program has the focus (bind a key of the desktop to &quot;orvane --toggle-ghost&quot;), and some clicks near the window&apos;s edge do not get through</source>
        <translation>dans cette session Wayland, Orvane passe par XWayland&#xa0;: en mode fantôme, ses touches n’agissent que lorsqu’un programme X11 a le focus (associez une touche du bureau à «&#xa0;orvane --toggle-ghost&#xa0;»), et certains clics près du bord de la fenêtre ne passent pas</translation>
    </message>
    <message>
        <source>go back in the stream; 10 seconds if none are given</source>
        <translation>reculer dans le flux ; de 10 secondes sans autre indication</translation>
    </message>
    <message>
        <source>go to what is live now</source>
        <translation>revenir à ce qui passe en direct</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number of seconds</source>
        <translation>« %1 » n&apos;est pas un nombre de secondes</translation>
    </message>
</context>
<context>
    <name>Failure</name>
    <message>
        <source>Stream ended</source>
        <translation>Le flux est terminé</translation>
    </message>
    <message>
        <source>Stream stalled</source>
        <translation>Le flux s’est arrêté</translation>
    </message>
    <message>
        <source>No picture arrived</source>
        <translation>Aucune image n’est arrivée</translation>
    </message>
    <message>
        <source>The stream has no web address</source>
        <translation>Le flux n’a pas d’adresse web</translation>
    </message>
    <message>
        <source>No sound arrived</source>
        <translation>Aucun son n’est arrivé</translation>
    </message>
    <message>
        <source>The stream takes too much memory</source>
        <translation>Le flux prend trop de mémoire</translation>
    </message>
    <message>
        <source>yt-dlp cannot read the site as it is now. Orvane keeps trying, with a newer yt-dlp if there is one.</source>
        <translation>yt-dlp ne sait pas lire le site dans son état actuel. Orvane continue d’essayer, avec un yt-dlp plus récent s’il y en a un.</translation>
    </message>
    <message>
        <source>The channel is not live now. Orvane looks again every few minutes.</source>
        <translation>La chaîne n’est pas en direct. Orvane vérifie de nouveau toutes les quelques minutes.</translation>
    </message>
    <message>
        <source>The site wants to be sure that you are not a bot. Orvane tries again in a few minutes.</source>
        <translation>Le site veut s’assurer que vous n’êtes pas un robot. Orvane réessaie dans quelques minutes.</translation>
    </message>
    <message>
        <source>The stream is private, for members only, blocked in this country, or gone. Orvane keeps looking for it.</source>
        <translation>Le flux est privé, réservé aux membres, bloqué dans ce pays ou supprimé. Orvane continue de le chercher.</translation>
    </message>
    <message>
        <source>No connection to the site. Orvane tries again, and at once when the network returns.</source>
        <translation>Pas de connexion au site. Orvane réessaie, et aussitôt que le réseau revient.</translation>
    </message>
    <message>
        <source>Stream resolve failed: </source>
        <translation>Flux introuvable&#xa0;: </translation>
    </message>
    <message>
        <source>Failed to run yt-dlp: </source>
        <translation>Impossible de lancer yt-dlp&#xa0;: </translation>
    </message>
    <message>
        <source>yt-dlp&apos;s own configuration gets in the way: </source>
        <translation>La configuration propre à yt-dlp gêne&#xa0;: </translation>
    </message>
    <message>
        <source>Stream resolver returned no output</source>
        <translation>La recherche du flux n’a rien donné</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Erreur inconnue</translation>
    </message>
    <message>
        <source>no video site is set up</source>
        <translation>aucun site vidéo n’est défini</translation>
    </message>
    <message>
        <source>yt-dlp not found and auto-install failed</source>
        <translation>yt-dlp est introuvable et son installation automatique a échoué</translation>
    </message>
</context>
<context>
    <name>GhostKeys</name>
    <message>
        <source>May Orvane&apos;s keys act while you type in other programs? If not, they act in Orvane&apos;s own windows only.</source>
        <translation>Les touches d’Orvane peuvent-elles agir pendant que vous tapez dans d’autres programmes&#xa0;? Sinon, elles n’agissent que dans les fenêtres d’Orvane.</translation>
    </message>
    <message>
        <source>Orvane: Ghost Mode</source>
        <translation>Orvane&#xa0;: mode fantôme</translation>
    </message>
    <message>
        <source>Keys in ghost mode</source>
        <translation>Touches en mode fantôme</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Pas maintenant</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Autoriser</translation>
    </message>
</context>
<context>
    <name>Menu</name>
    <message>
        <source>Best</source>
        <translation>Meilleure</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>%n minute restante</numerusform>
            <numerusform>%n minutes restantes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel Timer</source>
        <translation>Annuler la minuterie</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Résolution</translation>
    </message>
    <message>
        <source>👻 Ghost Mode</source>
        <translation>👻 Mode fantôme</translation>
    </message>
    <message>
        <source>Sleep Timer</source>
        <translation>Minuterie de sommeil</translation>
    </message>
    <message>
        <source>Add Channel...</source>
        <translation>Ajouter une chaîne...</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Réglages...</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>Rechercher des mises à jour...</translation>
    </message>
    <message>
        <source>About Orvane</source>
        <translation>À propos d’Orvane</translation>
    </message>
    <message>
        <source>Quit Orvane</source>
        <translation>Quitter Orvane</translation>
    </message>
    <message>
        <source>✅ Disable Ghost Mode</source>
        <translation>✅ Désactiver le mode fantôme</translation>
    </message>
    <message>
        <source>👻 Enable Ghost Mode</source>
        <translation>👻 Activer le mode fantôme</translation>
    </message>
    <message>
        <source>Sound Only</source>
        <translation>Son seul</translation>
    </message>
    <message>
        <source>10 Seconds Back</source>
        <translation>Reculer de 10 secondes</translation>
    </message>
    <message>
        <source>Go to Live</source>
        <translation>Revenir au direct</translation>
    </message>
</context>
<context>
    <name>Player</name>
    <message>
        <source>A channel is playing</source>
        <translation>Une chaîne est en cours de lecture</translation>
    </message>
    <message>
        <source>Close player</source>
        <translation>Fermer le lecteur</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>Fullscreen (F)</source>
        <translation>Plein écran (F)</translation>
    </message>
    <message>
        <source>Quit Orvane</source>
        <translation>Quitter Orvane</translation>
    </message>
    <message>
        <source>Quit Orvane (Q)</source>
        <translation>Quitter Orvane (Q)</translation>
    </message>
    <message>
        <source>Select a channel</source>
        <translation>Choisissez une chaîne</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>Rétablir le son</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Couper le son</translation>
    </message>
    <message>
        <source>Turn ghost mode off</source>
        <translation>Désactiver le mode fantôme</translation>
    </message>
    <message>
        <source>Ghost Mode ON (G)</source>
        <translation>Mode fantôme activé (G)</translation>
    </message>
    <message>
        <source>Turn ghost mode on</source>
        <translation>Activer le mode fantôme</translation>
    </message>
    <message>
        <source>Ghost Mode OFF (G)</source>
        <translation>Mode fantôme désactivé (G)</translation>
    </message>
    <message>
        <source>Trying again in %1 s</source>
        <translation>Nouvel essai dans %1 s</translation>
    </message>
    <message>
        <source>Trying again in %1 min %2 s</source>
        <translation>Nouvel essai dans %1 min %2 s</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Installing yt-dlp...</source>
        <translation>Installation de yt-dlp...</translation>
    </message>
    <message>
        <source>Loading %1...</source>
        <translation>Chargement de %1...</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Go to live (End)</source>
        <translation>Revenir au direct (Fin)</translation>
    </message>
    <message>
        <source>%1 behind live, go to live</source>
        <translation>%1 de retard sur le direct, revenir au direct</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Channel not found. Check the handle or URL.</source>
        <translation>Chaîne introuvable. Vérifiez l’identifiant ou l’URL.</translation>
    </message>
    <message>
        <source>Failed to run yt-dlp</source>
        <translation>Impossible de lancer yt-dlp</translation>
    </message>
    <message>
        <source>System</source>
        <translation>Système</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Favourite %1 (key %2)</source>
        <translation>Favori %1 (touche %2)</translation>
    </message>
    <message>
        <source>Favourite %1</source>
        <translation>Favori %1</translation>
    </message>
    <message>
        <source>Resolve</source>
        <translation>Chercher</translation>
    </message>
    <message>
        <source>Your Custom Channels</source>
        <translation>Vos propres chaînes</translation>
    </message>
    <message>
        <source>Paste a YouTube channel URL, @handle, or channel name. We&apos;ll resolve it and show you the channel before adding.</source>
        <translation>Collez l’URL d’une chaîne YouTube, son @identifiant ou son nom. Elle est cherchée et montrée avant l’ajout.</translation>
    </message>
    <message>
        <source>YouTube URL:</source>
        <translation>URL YouTube&#xa0;:</translation>
    </message>
    <message>
        <source>YouTube URL</source>
        <translation>URL YouTube</translation>
    </message>
    <message>
        <source>@handle or %1</source>
        <translation>@identifiant ou %1</translation>
    </message>
    <message>
        <source>Letters are shortcuts here</source>
        <translation>Les lettres sont des raccourcis ici</translation>
    </message>
    <message>
        <source>Type instead</source>
        <translation>Saisir du texte</translation>
    </message>
    <message>
        <source>Add Channel</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Please enter a YouTube URL or handle.</source>
        <translation>Saisissez une URL ou un identifiant YouTube.</translation>
    </message>
    <message>
        <source>Resolving...</source>
        <translation>Recherche...</translation>
    </message>
    <message>
        <source>Added %1!</source>
        <translation>%1 est ajoutée&#xa0;!</translation>
    </message>
    <message>
        <source>No custom channels yet. Add one above!</source>
        <translation>Aucune chaîne ajoutée. Ajoutez-en une ci-dessus&#xa0;!</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Retirer %1</translation>
    </message>
    <message>
        <source>Small</source>
        <translation>Petite</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Moyenne</translation>
    </message>
    <message>
        <source>Large</source>
        <translation>Grande</translation>
    </message>
    <message>
        <source>Stay above full-screen windows</source>
        <translation>Rester au-dessus des fenêtres en plein écran</translation>
    </message>
    <message>
        <source>Window Opacity:</source>
        <translation>Opacité&#xa0;:</translation>
    </message>
    <message>
        <source>Window Opacity</source>
        <translation>Opacité de la fenêtre</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1&#xa0;%</translation>
    </message>
    <message>
        <source>Window Size Preset:</source>
        <translation>Taille de fenêtre&#xa0;:</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Choisie</translation>
    </message>
    <message>
        <source>Favourite: %1</source>
        <translation>Favori&#xa0;: %1</translation>
    </message>
    <message>
        <source>Make it a favourite</source>
        <translation>En faire un favori</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Langue&#xa0;:</translation>
    </message>
    <message>
        <source>Default Resolution:</source>
        <translation>Résolution&#xa0;:</translation>
    </message>
    <message>
        <source>Auto-play last channel on launch</source>
        <translation>Lire la dernière chaîne au lancement</translation>
    </message>
    <message>
        <source>Appearance:</source>
        <translation>Apparence&#xa0;:</translation>
    </message>
    <message>
        <source>Use single-key shortcuts while typing</source>
        <translation>Raccourcis à une touche pendant la saisie</translation>
    </message>
    <message>
        <source>In ghost mode, use shortcuts in other programs too</source>
        <translation>En mode fantôme, raccourcis aussi dans les autres programmes</translation>
    </message>
    <message>
        <source>Start Orvane at login</source>
        <translation>Lancer Orvane à l’ouverture de session</translation>
    </message>
    <message>
        <source>Prepare the next channels</source>
        <translation>Préparer les chaînes suivantes</translation>
    </message>
    <message>
        <source>From the next start on</source>
        <translation>Au prochain lancement</translation>
    </message>
    <message>
        <source>The autostart folder cannot be changed.</source>
        <translation>Le dossier de démarrage automatique n’est pas modifiable.</translation>
    </message>
    <message>
        <source>Orvane Settings</source>
        <translation>Réglages d’Orvane</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>Chaînes</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apparence</translation>
    </message>
    <message>
        <source>Nothing</source>
        <translation>Rien</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>Keep to Go Back:</source>
        <translation>Retour en arrière :</translation>
    </message>
</context>
<context>
    <name>Update</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>What is new</source>
        <translation>Nouveautés</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Plus tard</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Télécharger</translation>
    </message>
    <message>
        <source>Orvane Update</source>
        <translation>Mise à jour d’Orvane</translation>
    </message>
    <message>
        <source>The address, or one it redirects to, is not secure (https).</source>
        <translation>L’adresse, ou une adresse vers laquelle elle redirige, n’est pas sûre (https).</translation>
    </message>
    <message>
        <source>The server could not be reached.</source>
        <translation>Le serveur est injoignable.</translation>
    </message>
    <message>
        <source>The server responded with an error.</source>
        <translation>Le serveur a répondu par une erreur.</translation>
    </message>
    <message>
        <source>The connection was lost.</source>
        <translation>La connexion a été perdue.</translation>
    </message>
    <message>
        <source>The server sent more data than expected.</source>
        <translation>Le serveur a envoyé plus de données que prévu.</translation>
    </message>
    <message>
        <source>The file could not be written. Is the disk full?</source>
        <translation>Le fichier n’a pas pu être écrit. Le disque est-il plein&#xa0;?</translation>
    </message>
    <message>
        <source>The download was cancelled.</source>
        <translation>Le téléchargement a été annulé.</translation>
    </message>
    <message>
        <source>The server&apos;s response could not be read.</source>
        <translation>La réponse du serveur est illisible.</translation>
    </message>
    <message>
        <source>The server&apos;s response is not a list of versions.</source>
        <translation>La réponse du serveur n’est pas une liste de versions.</translation>
    </message>
    <message>
        <source>Its size is given as %1. Orvane downloads at most %2.</source>
        <translation>Sa taille annoncée est de %1. Orvane télécharge au plus %2.</translation>
    </message>
    <message>
        <source>The download folder is not writable.</source>
        <translation>Le dossier de téléchargement n’est pas accessible en écriture.</translation>
    </message>
    <message>
        <source>The file is shorter than expected.</source>
        <translation>Le fichier est plus court que prévu.</translation>
    </message>
    <message>
        <source>The file&apos;s signature is not valid, so it may not come from Orvane&apos;s developers. It was deleted.</source>
        <translation>La signature du fichier n’est pas valide, il ne vient donc peut-être pas des développeurs d’Orvane. Il a été supprimé.</translation>
    </message>
    <message>
        <source>Updates come with your system</source>
        <translation>Les mises à jour viennent avec votre système</translation>
    </message>
    <message>
        <source>This build of Orvane gets its updates from the system&apos;s package manager.</source>
        <translation>Cette version d’Orvane reçoit ses mises à jour du gestionnaire de paquets du système.</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Recherche de mises à jour…</translation>
    </message>
    <message>
        <source>Orvane could not check for updates</source>
        <translation>Orvane n’a pas pu rechercher de mises à jour</translation>
    </message>
    <message>
        <source>Orvane is up to date</source>
        <translation>Orvane est à jour</translation>
    </message>
    <message>
        <source>You have %1, the newest version.</source>
        <translation>Vous avez %1, la version la plus récente.</translation>
    </message>
    <message>
        <source>Orvane %1 is available</source>
        <translation>Orvane %1 est disponible</translation>
    </message>
    <message>
        <source>You have %1.</source>
        <translation>Vous avez %1.</translation>
    </message>
    <message>
        <source>Downloading Orvane %1</source>
        <translation>Téléchargement d’Orvane %1</translation>
    </message>
    <message>
        <source>Orvane %1 could not be downloaded</source>
        <translation>Orvane %1 n’a pas pu être téléchargé</translation>
    </message>
    <message>
        <source>Orvane %1 has been downloaded</source>
        <translation>Orvane %1 a été téléchargé</translation>
    </message>
    <message>
        <source>Signature verified. “%1” is in your folder “%2”. Install it to complete the update.</source>
        <translation>Signature vérifiée. «&#xa0;%1&#xa0;» est dans votre dossier «&#xa0;%2&#xa0;». Installez-le pour terminer la mise à jour.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>Verifying the signature…</source>
        <translation>Vérification de la signature…</translation>
    </message>
</context>
<context>
    <name>YtDlp</name>
    <message>
        <source>Python 3 is required. Please install Xcode Command Line Tools.</source>
        <translation>Python 3 est nécessaire. Installez les outils en ligne de commande de Xcode.</translation>
    </message>
    <message>
        <source>Could not install yt-dlp: it has no file for this computer&apos;s processor. Please install yt-dlp, or Python 3.10 or later, from your distribution.</source>
        <translation>Impossible d’installer yt-dlp&#xa0;: il n’a pas de fichier pour le processeur de cet ordinateur. Installez yt-dlp, ou Python 3.10 ou plus récent, depuis votre distribution.</translation>
    </message>
    <message>
        <source>Could not install yt-dlp. Please install manually: brew install yt-dlp</source>
        <translation>Impossible d’installer yt-dlp. Installez-le vous-même&#xa0;: brew install yt-dlp</translation>
    </message>
    <message>
        <source>The checksums of yt-dlp&apos;s newest release could not be downloaded.</source>
        <translation>Les sommes de contrôle de la dernière version de yt-dlp n’ont pas pu être téléchargées.</translation>
    </message>
    <message>
        <source>yt-dlp&apos;s newest release has a file for this computer&apos;s processor only where Python 3.10 or later is installed.</source>
        <translation>La dernière version de yt-dlp n’a de fichier pour le processeur de cet ordinateur que si Python 3.10 ou plus récent est installé.</translation>
    </message>
    <message>
        <source>yt-dlp&apos;s newest release could not be downloaded.</source>
        <translation>La dernière version de yt-dlp n’a pas pu être téléchargée.</translation>
    </message>
    <message>
        <source>The downloaded yt-dlp does not match its published checksum and was deleted.</source>
        <translation>Le yt-dlp téléchargé ne correspond pas à sa somme de contrôle publiée et a été supprimé.</translation>
    </message>
    <message>
        <source>yt-dlp&apos;s newest release does not run on this computer.</source>
        <translation>La dernière version de yt-dlp ne fonctionne pas sur cet ordinateur.</translation>
    </message>
    <message>
        <source>Looking for yt-dlp&apos;s newest release...</source>
        <translation>Recherche de la dernière version de yt-dlp...</translation>
    </message>
    <message>
        <source>Installing yt-dlp...</source>
        <translation>Installation de yt-dlp...</translation>
    </message>
    <message>
        <source>The newest release could not be looked up. Is there a network?</source>
        <translation>La dernière version n’a pas pu être trouvée. Y a-t-il un réseau&#xa0;?</translation>
    </message>
    <message>
        <source>The installed yt-dlp does not run.</source>
        <translation>Le yt-dlp installé ne fonctionne pas.</translation>
    </message>
    <message>
        <source>Upgrading yt-dlp from %1 to %2...</source>
        <translation>Mise à niveau de yt-dlp de %1 à %2...</translation>
    </message>
    <message>
        <source>Downloading yt-dlp %1...</source>
        <translation>Téléchargement de yt-dlp %1...</translation>
    </message>
    <message>
        <source>of today</source>
        <translation>d’aujourd’hui</translation>
    </message>
    <message numerus="yes">
        <source>%n years old</source>
        <translation>
            <numerusform>%n an</numerusform>
            <numerusform>%n ans</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n months old</source>
        <translation>
            <numerusform>%n mois</numerusform>
            <numerusform>%n mois</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n days old</source>
        <translation>
            <numerusform>%n jour</numerusform>
            <numerusform>%n jours</numerusform>
        </translation>
    </message>
    <message>
        <source>yt-dlp is not installed.</source>
        <translation>yt-dlp n’est pas installé.</translation>
    </message>
    <message>
        <source>yt-dlp %1 (%2), %3</source>
        <translation>yt-dlp %1 (%2), %3</translation>
    </message>
    <message>
        <source>yt-dlp %1, %2</source>
        <translation>yt-dlp %1, %2</translation>
    </message>
    <message>
        <source>%1. Where the site finds it too old: %2.</source>
        <translation>%1. Là où le site le trouve trop ancien&#xa0;: %2.</translation>
    </message>
    <message>
        <source>Update yt-dlp</source>
        <translation>Mettre yt-dlp à jour</translation>
    </message>
    <message>
        <source>yt-dlp %1 is installed.</source>
        <translation>yt-dlp %1 est installé.</translation>
    </message>
    <message>
        <source>yt-dlp is updated from %1 to %2.</source>
        <translation>yt-dlp est passé de %1 à %2.</translation>
    </message>
    <message>
        <source>yt-dlp %1 is the newest.</source>
        <translation>yt-dlp %1 est le plus récent.</translation>
    </message>
</context>
</TS>
