<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>About</name>
    <message>
        <source>Version %1</source>
        <translation>الإصدار %1</translation>
    </message>
    <message>
        <source>Live Arabic &amp; international news channels in your menu bar. Free, no account needed.</source>
        <translation>قنوات إخبارية عربية ودولية مباشرة في متناول يدك. مجانية، ولا تحتاج إلى حساب.</translation>
    </message>
    <message>
        <source>About Orvane</source>
        <translation>حول Orvane</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>&quot;%1&quot; is the name of several channels; use one of these ids:</source>
        <translation>«%1» اسم لأكثر من قناة؛ استخدم أحد هذه المعرّفات:</translation>
    </message>
    <message>
        <source>there is no channel &quot;%1&quot;; orvane --list prints all channels</source>
        <translation>لا توجد قناة باسم «%1»؛ يطبع الأمر ⁦orvane --list⁩ كل القنوات</translation>
    </message>
    <message>
        <source>there is no channel &quot;%1&quot;; similar ones:</source>
        <translation>لا توجد قناة باسم «%1»؛ قنوات مشابهة:</translation>
    </message>
    <message>
        <source>play this channel, by its id or one of its names</source>
        <translation>تشغيل هذه القناة، بمعرّفها أو بأحد أسمائها</translation>
    </message>
    <message>
        <source>play the next enabled channel</source>
        <translation>تشغيل القناة المفعّلة التالية</translation>
    </message>
    <message>
        <source>play the previous enabled channel</source>
        <translation>تشغيل القناة المفعّلة السابقة</translation>
    </message>
    <message>
        <source>mute or unmute</source>
        <translation>كتم الصوت أو إلغاء كتمه</translation>
    </message>
    <message>
        <source>turn ghost mode on or off</source>
        <translation>تشغيل وضع الشبح أو إيقافه</translation>
    </message>
    <message>
        <source>open the settings</source>
        <translation>فتح الإعدادات</translation>
    </message>
    <message>
        <source>look up a link, handle or name to add; &quot;&quot; to be asked</source>
        <translation>البحث عن رابط أو معرّف أو اسم لإضافته؛ ⁦&quot;&quot;⁩ لتُسأل عنه</translation>
    </message>
    <message>
        <source>quit the running Orvane; if there is none, do nothing</source>
        <translation>إنهاء Orvane إن كان يعمل، وإلا فلا شيء</translation>
    </message>
    <message>
        <source>print id, category and name of every channel</source>
        <translation>طباعة معرّف كل قناة وفئتها واسمها</translation>
    </message>
    <message>
        <source>with --list: as JSON</source>
        <translation>مع ⁦--list⁩: بصيغة JSON</translation>
    </message>
    <message>
        <source>log to the standard error, for the copy that this starts</source>
        <translation>كتابة السجل إلى مجرى الخطأ، للنسخة التي يبدؤها هذا الأمر</translation>
    </message>
    <message>
        <source>print the version of Orvane and of what it uses</source>
        <translation>طباعة إصدار Orvane وإصدارات ما يستخدمه</translation>
    </message>
    <message>
        <source>print this help</source>
        <translation>طباعة هذه المساعدة</translation>
    </message>
    <message>
        <source>unexpected argument &quot;%1&quot;</source>
        <translation>معامل غير متوقع «%1»</translation>
    </message>
    <message>
        <source>%1; did you mean %2?</source>
        <translation>%1؛ هل تقصد %2؟</translation>
    </message>
    <message>
        <source>missing value after &quot;%1&quot;</source>
        <translation>تنقص قيمة بعد «%1»</translation>
    </message>
    <message>
        <source>unexpected value after &quot;%1&quot;</source>
        <translation>قيمة غير متوقعة بعد «%1»</translation>
    </message>
    <message>
        <source>--json needs --list</source>
        <translation>الخيار ⁦--json⁩ يحتاج إلى ⁦--list⁩</translation>
    </message>
    <message>
        <source>--list can only be combined with --json</source>
        <translation>لا يُجمع الخيار ⁦--list⁩ إلا مع ⁦--json⁩</translation>
    </message>
    <message>
        <source>--quit cannot be combined with other options</source>
        <translation>لا يُجمع الخيار ⁦--quit⁩ مع خيارات أخرى</translation>
    </message>
    <message>
        <source>Usage: orvane [OPTIONS]

Plays live channels in a small window. While it runs, starting it again shows
that window, and the running copy carries out the options in their order.</source>
        <translation>الاستخدام: ⁦orvane [OPTIONS]⁩

يعرض قنوات مباشرة في نافذة صغيرة. إذا بدأته مرة أخرى وهو يعمل ظهرت تلك
النافذة، ونفّذت النسخة العاملة الخيارات بترتيبها.</translation>
    </message>
    <message>
        <source>Exit codes: 0 done, 1 failed, 2 not understood or no such channel.</source>
        <translation>رموز الخروج: 0 تم، 1 فشل، 2 أمر غير مفهوم أو قناة غير موجودة.</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>غير موجود</translation>
    </message>
    <message>
        <source>no answer from %1</source>
        <translation>لا جواب من %1</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>غير معروف</translation>
    </message>
    <message>
        <source>%1 %2
commit %3
Qt %4
libmpv client API %5
yt-dlp %6
</source>
        <translation>%1 %2
الإيداع %3
Qt %4
واجهة libmpv البرمجية %5
yt-dlp %6
</translation>
    </message>
    <message>
        <source>the options are too long</source>
        <translation>الخيارات أطول مما ينبغي</translation>
    </message>
    <message>
        <source>another version of Orvane is running and does not know these options; quit it first</source>
        <translation>يعمل إصدار آخر من Orvane لا يعرف هذه الخيارات؛ أنهِه أولًا</translation>
    </message>
    <message>
        <source>Orvane is running but does not answer</source>
        <translation>برنامج Orvane يعمل ولكنه لا يجيب</translation>
    </message>
    <message>
        <source>neither XDG_RUNTIME_DIR nor the folder for temporary files is usable, so Orvane cannot check whether it is already running</source>
        <translation>لا يمكن استخدام XDG_RUNTIME_DIR ولا مجلد الملفات المؤقتة، فلا يستطيع Orvane التحقق من أنه يعمل بالفعل</translation>
    </message>
    <message>
        <source>Try orvane --help.</source>
        <translation>جرّب الأمر ⁦orvane --help⁩.</translation>
    </message>
    <message>
        <source>only %1 files may be open at the same time, and Orvane needs %2 (ulimit -n)</source>
        <translation>لا يُسمح بفتح أكثر من %1 من الملفات في وقت واحد، ويحتاج Orvane إلى %2 (⁦ulimit -n⁩)</translation>
    </message>
    <message>
        <source>only %1 more threads can be started, and Orvane needs %2 (ulimit -u)</source>
        <translation>لا يمكن بدء أكثر من %1 من خيوط التنفيذ، ويحتاج Orvane إلى %2 (⁦ulimit -u⁩)</translation>
    </message>
    <message>
        <source>there is no display; neither DISPLAY nor WAYLAND_DISPLAY is set</source>
        <translation>لا توجد شاشة عرض؛ لم يُعيَّن DISPLAY ولا WAYLAND_DISPLAY</translation>
    </message>
    <message>
        <source>this Wayland session has no XWayland (DISPLAY is not set), which Orvane needs to place its window and to keep it above others; QT_QPA_PLATFORM=wayland starts it without that</source>
        <translation>جلسة Wayland هذه بلا XWayland (لم يُعيَّن DISPLAY)، وهو ما يحتاج إليه Orvane ليضع نافذته في مكانها ويبقيها فوق غيرها؛ يبدؤه ⁦QT_QPA_PLATFORM=wayland⁩ بدون ذلك</translation>
    </message>
    <message>
        <source>the display &quot;%1&quot; cannot be reached</source>
        <translation>لا يمكن الوصول إلى شاشة العرض «%1»</translation>
    </message>
    <message>
        <source>in this Wayland session Orvane runs through XWayland: in ghost mode its keys are heard only while an X11 program has the focus (bind a key of the desktop to &quot;orvane --toggle-ghost&quot;), and some clicks near the window&apos;s edge do not get through</source>
        <translation>يعمل Orvane في جلسة Wayland هذه عبر XWayland: في وضع الشبح لا تُسمع مفاتيحه إلا إذا كان التركيز في برنامج من برامج X11 (اربط مفتاحًا من مفاتيح سطح المكتب بالأمر ⁦orvane --toggle-ghost⁩)، ولا تنفذ بعض النقرات قرب حافة النافذة</translation>
    </message>
    <message>
        <source>go back in the stream; 10 seconds if none are given</source>
        <translation>الرجوع في البث؛ ١٠ ثوانٍ إذا لم يُذكر عدد</translation>
    </message>
    <message>
        <source>go to what is live now</source>
        <translation>الانتقال إلى ما يُبث الآن</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no number of seconds</source>
        <translation>«%1» ليس عدد ثوانٍ</translation>
    </message>
</context>
<context>
    <name>Failure</name>
    <message>
        <source>Stream ended</source>
        <translation>انتهى البث</translation>
    </message>
    <message>
        <source>Stream stalled</source>
        <translation>توقف البث</translation>
    </message>
    <message>
        <source>No picture arrived</source>
        <translation>لم تصل أي صورة</translation>
    </message>
    <message>
        <source>The stream has no web address</source>
        <translation>ليس للبث عنوان على الويب</translation>
    </message>
    <message>
        <source>No sound arrived</source>
        <translation>لم يصل أي صوت</translation>
    </message>
    <message>
        <source>The stream takes too much memory</source>
        <translation>يستهلك البث ذاكرة أكثر مما ينبغي</translation>
    </message>
    <message>
        <source>yt-dlp cannot read the site as it is now. Orvane keeps trying, with a newer yt-dlp if there is one.</source>
        <translation>لا يستطيع yt-dlp قراءة الموقع بحالته الآن. يواصل Orvane المحاولة، وبإصدار أحدث من yt-dlp إن وُجد.</translation>
    </message>
    <message>
        <source>The channel is not live now. Orvane looks again every few minutes.</source>
        <translation>القناة لا تبث مباشرة الآن. يعاود Orvane التحقق كل بضع دقائق.</translation>
    </message>
    <message>
        <source>The site wants to be sure that you are not a bot. Orvane tries again in a few minutes.</source>
        <translation>يريد الموقع التأكد من أنك لست برنامجًا آليًا. يعاود Orvane المحاولة بعد بضع دقائق.</translation>
    </message>
    <message>
        <source>The stream is private, for members only, blocked in this country, or gone. Orvane keeps looking for it.</source>
        <translation>البث خاص أو للأعضاء فقط أو محجوب في هذا البلد أو لم يعد موجودًا. يواصل Orvane البحث عنه.</translation>
    </message>
    <message>
        <source>No connection to the site. Orvane tries again, and at once when the network returns.</source>
        <translation>لا اتصال بالموقع. يعاود Orvane المحاولة، وفورًا عند عودة الشبكة.</translation>
    </message>
    <message>
        <source>Stream resolve failed: </source>
        <translation>تعذّر العثور على البث: </translation>
    </message>
    <message>
        <source>Failed to run yt-dlp: </source>
        <translation>تعذّر تشغيل yt-dlp: </translation>
    </message>
    <message>
        <source>yt-dlp&apos;s own configuration gets in the way: </source>
        <translation>إعدادات yt-dlp الخاصة به تعيق العمل: </translation>
    </message>
    <message>
        <source>Stream resolver returned no output</source>
        <translation>لم تُسفر محاولة العثور على البث عن أي نتيجة</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>خطأ غير معروف</translation>
    </message>
    <message>
        <source>no video site is set up</source>
        <translation>لم يُحدَّد موقع للفيديو</translation>
    </message>
    <message>
        <source>yt-dlp not found and auto-install failed</source>
        <translation>لم يُعثر على yt-dlp وفشل تثبيته تلقائيًا</translation>
    </message>
</context>
<context>
    <name>GhostKeys</name>
    <message>
        <source>May Orvane&apos;s keys act while you type in other programs? If not, they act in Orvane&apos;s own windows only.</source>
        <translation>هل يُسمح لمفاتيح Orvane بالعمل أثناء كتابتك في برامج أخرى؟ إن لم يُسمح، عملت في نوافذ Orvane فقط.</translation>
    </message>
    <message>
        <source>Orvane: Ghost Mode</source>
        <translation>Orvane: وضع الشبح</translation>
    </message>
    <message>
        <source>Keys in ghost mode</source>
        <translation>المفاتيح في وضع الشبح</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>ليس الآن</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>السماح</translation>
    </message>
</context>
<context>
    <name>Menu</name>
    <message>
        <source>Best</source>
        <translation>الأفضل</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes left</source>
        <translation>
            <numerusform>لم تبق أي دقيقة</numerusform>
            <numerusform>بقيت دقيقة واحدة</numerusform>
            <numerusform>بقيت دقيقتان</numerusform>
            <numerusform>بقيت %n دقائق</numerusform>
            <numerusform>بقيت %n دقيقة</numerusform>
            <numerusform>بقيت %n دقيقة</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n دقيقة</numerusform>
            <numerusform>دقيقة واحدة</numerusform>
            <numerusform>دقيقتان</numerusform>
            <numerusform>%n دقائق</numerusform>
            <numerusform>%n دقيقة</numerusform>
            <numerusform>%n دقيقة</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancel Timer</source>
        <translation>إلغاء المؤقت</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>الدقة</translation>
    </message>
    <message>
        <source>👻 Ghost Mode</source>
        <translation>👻 وضع الشبح</translation>
    </message>
    <message>
        <source>Sleep Timer</source>
        <translation>مؤقت النوم</translation>
    </message>
    <message>
        <source>Add Channel...</source>
        <translation>إضافة قناة...</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>الإعدادات...</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>البحث عن تحديثات...</translation>
    </message>
    <message>
        <source>About Orvane</source>
        <translation>حول Orvane</translation>
    </message>
    <message>
        <source>Quit Orvane</source>
        <translation>إنهاء Orvane</translation>
    </message>
    <message>
        <source>✅ Disable Ghost Mode</source>
        <translation>✅ إيقاف وضع الشبح</translation>
    </message>
    <message>
        <source>👻 Enable Ghost Mode</source>
        <translation>👻 تشغيل وضع الشبح</translation>
    </message>
    <message>
        <source>Sound Only</source>
        <translation>الصوت فقط</translation>
    </message>
    <message>
        <source>10 Seconds Back</source>
        <translation>رجوع ١٠ ثوانٍ</translation>
    </message>
    <message>
        <source>Go to Live</source>
        <translation>الانتقال إلى البث المباشر</translation>
    </message>
</context>
<context>
    <name>Player</name>
    <message>
        <source>A channel is playing</source>
        <translation>توجد قناة قيد التشغيل</translation>
    </message>
    <message>
        <source>Close player</source>
        <translation>إغلاق المشغّل</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>ملء الشاشة</translation>
    </message>
    <message>
        <source>Fullscreen (F)</source>
        <translation>ملء الشاشة (F)</translation>
    </message>
    <message>
        <source>Quit Orvane</source>
        <translation>إنهاء Orvane</translation>
    </message>
    <message>
        <source>Quit Orvane (Q)</source>
        <translation>إنهاء Orvane ‏(Q)</translation>
    </message>
    <message>
        <source>Select a channel</source>
        <translation>اختر قناة</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>إلغاء كتم الصوت</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>كتم الصوت</translation>
    </message>
    <message>
        <source>Turn ghost mode off</source>
        <translation>إيقاف وضع الشبح</translation>
    </message>
    <message>
        <source>Ghost Mode ON (G)</source>
        <translation>وضع الشبح مفعّل (G)</translation>
    </message>
    <message>
        <source>Turn ghost mode on</source>
        <translation>تشغيل وضع الشبح</translation>
    </message>
    <message>
        <source>Ghost Mode OFF (G)</source>
        <translation>وضع الشبح معطّل (G)</translation>
    </message>
    <message>
        <source>Trying again in %1 s</source>
        <translation>إعادة المحاولة بعد %1 ث</translation>
    </message>
    <message>
        <source>Trying again in %1 min %2 s</source>
        <translation>إعادة المحاولة بعد %1 د و%2 ث</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>إعادة المحاولة</translation>
    </message>
    <message>
        <source>Installing yt-dlp...</source>
        <translation>جارٍ تثبيت yt-dlp...</translation>
    </message>
    <message>
        <source>Loading %1...</source>
        <translation>جارٍ تحميل %1...</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>مستوى الصوت</translation>
    </message>
    <message>
        <source>Go to live (End)</source>
        <translation>الانتقال إلى البث المباشر (⁦End⁩)</translation>
    </message>
    <message>
        <source>%1 behind live, go to live</source>
        <translation>متأخر عن البث المباشر بمقدار %1، الانتقال إلى البث المباشر</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Channel not found. Check the handle or URL.</source>
        <translation>لم يُعثر على القناة. تحقّق من المعرّف أو الرابط.</translation>
    </message>
    <message>
        <source>Failed to run yt-dlp</source>
        <translation>تعذّر تشغيل yt-dlp</translation>
    </message>
    <message>
        <source>System</source>
        <translation>حسب النظام</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>داكن</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>فاتح</translation>
    </message>
    <message>
        <source>Favourite %1 (key %2)</source>
        <translation>المفضلة %1 (المفتاح %2)</translation>
    </message>
    <message>
        <source>Favourite %1</source>
        <translation>المفضلة %1</translation>
    </message>
    <message>
        <source>Resolve</source>
        <translation>بحث</translation>
    </message>
    <message>
        <source>Your Custom Channels</source>
        <translation>القنوات التي أضفتها</translation>
    </message>
    <message>
        <source>Paste a YouTube channel URL, @handle, or channel name. We&apos;ll resolve it and show you the channel before adding.</source>
        <translation>ألصق رابط قناة على YouTube أو معرّفها ⁦@handle⁩ أو اسمها. سنبحث عنها ونعرضها لك قبل إضافتها.</translation>
    </message>
    <message>
        <source>YouTube URL:</source>
        <translation>رابط YouTube:</translation>
    </message>
    <message>
        <source>YouTube URL</source>
        <translation>رابط YouTube</translation>
    </message>
    <message>
        <source>@handle or %1</source>
        <translation>⁦@handle⁩ أو %1</translation>
    </message>
    <message>
        <source>Letters are shortcuts here</source>
        <translation>الحروف اختصارات هنا</translation>
    </message>
    <message>
        <source>Type instead</source>
        <translation>الكتابة بدلًا من ذلك</translation>
    </message>
    <message>
        <source>Add Channel</source>
        <translation>إضافة قناة</translation>
    </message>
    <message>
        <source>Please enter a YouTube URL or handle.</source>
        <translation>أدخل رابطًا أو معرّفًا على YouTube.</translation>
    </message>
    <message>
        <source>Resolving...</source>
        <translation>جارٍ البحث...</translation>
    </message>
    <message>
        <source>Added %1!</source>
        <translation>أُضيفت %1!</translation>
    </message>
    <message>
        <source>No custom channels yet. Add one above!</source>
        <translation>لم تُضف أي قناة بعد. أضف واحدة أعلاه!</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>إزالة</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>إزالة %1</translation>
    </message>
    <message>
        <source>Small</source>
        <translation>صغير</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>متوسط</translation>
    </message>
    <message>
        <source>Large</source>
        <translation>كبير</translation>
    </message>
    <message>
        <source>Stay above full-screen windows</source>
        <translation>البقاء فوق النوافذ التي تملأ الشاشة</translation>
    </message>
    <message>
        <source>Window Opacity:</source>
        <translation>عتامة النافذة:</translation>
    </message>
    <message>
        <source>Window Opacity</source>
        <translation>عتامة النافذة</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1٪</translation>
    </message>
    <message>
        <source>Window Size Preset:</source>
        <translation>حجم النافذة:</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>مختار</translation>
    </message>
    <message>
        <source>Favourite: %1</source>
        <translation>مفضلة: %1</translation>
    </message>
    <message>
        <source>Make it a favourite</source>
        <translation>إضافتها إلى المفضلة</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>اللغة:</translation>
    </message>
    <message>
        <source>Default Resolution:</source>
        <translation>الدقة الافتراضية:</translation>
    </message>
    <message>
        <source>Auto-play last channel on launch</source>
        <translation>تشغيل آخر قناة تلقائيًا عند البدء</translation>
    </message>
    <message>
        <source>Appearance:</source>
        <translation>المظهر:</translation>
    </message>
    <message>
        <source>Use single-key shortcuts while typing</source>
        <translation>استخدام اختصارات المفتاح الواحد أثناء الكتابة</translation>
    </message>
    <message>
        <source>In ghost mode, use shortcuts in other programs too</source>
        <translation>في وضع الشبح، استخدام الاختصارات في البرامج الأخرى أيضًا</translation>
    </message>
    <message>
        <source>Start Orvane at login</source>
        <translation>بدء Orvane عند تسجيل الدخول</translation>
    </message>
    <message>
        <source>Prepare the next channels</source>
        <translation>تجهيز القنوات التالية مسبقًا</translation>
    </message>
    <message>
        <source>From the next start on</source>
        <translation>ابتداءً من التشغيل التالي</translation>
    </message>
    <message>
        <source>The autostart folder cannot be changed.</source>
        <translation>لا يمكن تغيير مجلد بدء التشغيل التلقائي.</translation>
    </message>
    <message>
        <source>Orvane Settings</source>
        <translation>إعدادات Orvane</translation>
    </message>
    <message>
        <source>General</source>
        <translation>عام</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>القنوات</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>المظهر</translation>
    </message>
    <message>
        <source>Nothing</source>
        <translation>لا شيء</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>أقل من دقيقة</numerusform>
            <numerusform>دقيقة واحدة</numerusform>
            <numerusform>دقيقتان</numerusform>
            <numerusform>%n دقائق</numerusform>
            <numerusform>%n دقيقة</numerusform>
            <numerusform>%n دقيقة</numerusform>
        </translation>
    </message>
    <message>
        <source>Keep to Go Back:</source>
        <translation>المدة المحفوظة للرجوع:</translation>
    </message>
</context>
<context>
    <name>Update</name>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>What is new</source>
        <translation>الجديد في هذا الإصدار</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>لاحقًا</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>تنزيل</translation>
    </message>
    <message>
        <source>Orvane Update</source>
        <translation>تحديث Orvane</translation>
    </message>
    <message>
        <source>The address, or one it redirects to, is not secure (https).</source>
        <translation>العنوان، أو عنوان يحيل إليه، غير آمن (https).</translation>
    </message>
    <message>
        <source>The server could not be reached.</source>
        <translation>تعذّر الوصول إلى الخادم.</translation>
    </message>
    <message>
        <source>The server responded with an error.</source>
        <translation>أجاب الخادم بخطأ.</translation>
    </message>
    <message>
        <source>The connection was lost.</source>
        <translation>انقطع الاتصال.</translation>
    </message>
    <message>
        <source>The server sent more data than expected.</source>
        <translation>أرسل الخادم بيانات أكثر من المتوقع.</translation>
    </message>
    <message>
        <source>The file could not be written. Is the disk full?</source>
        <translation>تعذّرت كتابة الملف. هل القرص ممتلئ؟</translation>
    </message>
    <message>
        <source>The download was cancelled.</source>
        <translation>أُلغي التنزيل.</translation>
    </message>
    <message>
        <source>The server&apos;s response could not be read.</source>
        <translation>تعذّرت قراءة رد الخادم.</translation>
    </message>
    <message>
        <source>The server&apos;s response is not a list of versions.</source>
        <translation>رد الخادم ليس قائمة إصدارات.</translation>
    </message>
    <message>
        <source>Its size is given as %1. Orvane downloads at most %2.</source>
        <translation>حجمه المذكور %1. لا ينزّل Orvane أكثر من %2.</translation>
    </message>
    <message>
        <source>The download folder is not writable.</source>
        <translation>لا يمكن الكتابة في مجلد التنزيلات.</translation>
    </message>
    <message>
        <source>The file is shorter than expected.</source>
        <translation>الملف أقصر من المتوقع.</translation>
    </message>
    <message>
        <source>The file&apos;s signature is not valid, so it may not come from Orvane&apos;s developers. It was deleted.</source>
        <translation>توقيع الملف غير صالح، فقد لا يكون صادرًا عن مطوري Orvane. لذلك حُذف.</translation>
    </message>
    <message>
        <source>Updates come with your system</source>
        <translation>تأتي التحديثات مع نظامك</translation>
    </message>
    <message>
        <source>This build of Orvane gets its updates from the system&apos;s package manager.</source>
        <translation>تحصل هذه النسخة من Orvane على تحديثاتها من مدير الحزم في النظام.</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>جارٍ البحث عن تحديثات…</translation>
    </message>
    <message>
        <source>Orvane could not check for updates</source>
        <translation>تعذّر على Orvane البحث عن تحديثات</translation>
    </message>
    <message>
        <source>Orvane is up to date</source>
        <translation>نسخة Orvane لديك هي الأحدث</translation>
    </message>
    <message>
        <source>You have %1, the newest version.</source>
        <translation>لديك الإصدار %1، وهو الأحدث.</translation>
    </message>
    <message>
        <source>Orvane %1 is available</source>
        <translation>يتوفر الإصدار %1 من Orvane</translation>
    </message>
    <message>
        <source>You have %1.</source>
        <translation>لديك الإصدار %1.</translation>
    </message>
    <message>
        <source>Downloading Orvane %1</source>
        <translation>جارٍ تنزيل الإصدار %1 من Orvane</translation>
    </message>
    <message>
        <source>Orvane %1 could not be downloaded</source>
        <translation>تعذّر تنزيل الإصدار %1 من Orvane</translation>
    </message>
    <message>
        <source>Orvane %1 has been downloaded</source>
        <translation>نُزّل الإصدار %1 من Orvane</translation>
    </message>
    <message>
        <source>Signature verified. “%1” is in your folder “%2”. Install it to complete the update.</source>
        <translation>تم التحقق من التوقيع. الملف «%1» في مجلدك «%2». ثبّته لإكمال التحديث.</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 من %2</translation>
    </message>
    <message>
        <source>Verifying the signature…</source>
        <translation>جارٍ التحقق من التوقيع…</translation>
    </message>
</context>
<context>
    <name>YtDlp</name>
    <message>
        <source>Python 3 is required. Please install Xcode Command Line Tools.</source>
        <translation>يلزم وجود Python 3. ثبّت أدوات سطر أوامر Xcode.</translation>
    </message>
    <message>
        <source>Could not install yt-dlp: it has no file for this computer&apos;s processor. Please install yt-dlp, or Python 3.10 or later, from your distribution.</source>
        <translation>تعذّر تثبيت yt-dlp: ليس له ملف لمعالج هذا الحاسوب. ثبّت yt-dlp، أو Python 3.10 أو أحدث، من توزيعتك.</translation>
    </message>
    <message>
        <source>Could not install yt-dlp. Please install manually: brew install yt-dlp</source>
        <translation>تعذّر تثبيت yt-dlp. ثبّته يدويًا: ⁦brew install yt-dlp⁩</translation>
    </message>
    <message>
        <source>The checksums of yt-dlp&apos;s newest release could not be downloaded.</source>
        <translation>تعذّر تنزيل المجاميع الاختبارية لأحدث إصدار من yt-dlp.</translation>
    </message>
    <message>
        <source>yt-dlp&apos;s newest release has a file for this computer&apos;s processor only where Python 3.10 or later is installed.</source>
        <translation>ليس في أحدث إصدار من yt-dlp ملف لمعالج هذا الحاسوب إلا إذا كان Python 3.10 أو أحدث مثبّتًا.</translation>
    </message>
    <message>
        <source>yt-dlp&apos;s newest release could not be downloaded.</source>
        <translation>تعذّر تنزيل أحدث إصدار من yt-dlp.</translation>
    </message>
    <message>
        <source>The downloaded yt-dlp does not match its published checksum and was deleted.</source>
        <translation>لا يطابق yt-dlp الذي نُزّل مجموعه الاختباري المنشور، فحُذف.</translation>
    </message>
    <message>
        <source>yt-dlp&apos;s newest release does not run on this computer.</source>
        <translation>لا يعمل أحدث إصدار من yt-dlp على هذا الحاسوب.</translation>
    </message>
    <message>
        <source>Looking for yt-dlp&apos;s newest release...</source>
        <translation>جارٍ البحث عن أحدث إصدار من yt-dlp...</translation>
    </message>
    <message>
        <source>Installing yt-dlp...</source>
        <translation>جارٍ تثبيت yt-dlp...</translation>
    </message>
    <message>
        <source>The newest release could not be looked up. Is there a network?</source>
        <translation>تعذّر البحث عن أحدث إصدار. هل الشبكة متصلة؟</translation>
    </message>
    <message>
        <source>The installed yt-dlp does not run.</source>
        <translation>لا يعمل yt-dlp المثبّت.</translation>
    </message>
    <message>
        <source>Upgrading yt-dlp from %1 to %2...</source>
        <translation>جارٍ تحديث yt-dlp من %1 إلى %2...</translation>
    </message>
    <message>
        <source>Downloading yt-dlp %1...</source>
        <translation>جارٍ تنزيل الإصدار %1 من yt-dlp...</translation>
    </message>
    <message>
        <source>of today</source>
        <translation>صدر اليوم</translation>
    </message>
    <message numerus="yes">
        <source>%n years old</source>
        <translation>
            <numerusform>أقل من سنة</numerusform>
            <numerusform>عمره سنة واحدة</numerusform>
            <numerusform>عمره سنتان</numerusform>
            <numerusform>عمره %n سنوات</numerusform>
            <numerusform>عمره %n سنة</numerusform>
            <numerusform>عمره %n سنة</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n months old</source>
        <translation>
            <numerusform>أقل من شهر</numerusform>
            <numerusform>عمره شهر واحد</numerusform>
            <numerusform>عمره شهران</numerusform>
            <numerusform>عمره %n أشهر</numerusform>
            <numerusform>عمره %n شهرًا</numerusform>
            <numerusform>عمره %n شهر</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n days old</source>
        <translation>
            <numerusform>صدر اليوم</numerusform>
            <numerusform>عمره يوم واحد</numerusform>
            <numerusform>عمره يومان</numerusform>
            <numerusform>عمره %n أيام</numerusform>
            <numerusform>عمره %n يومًا</numerusform>
            <numerusform>عمره %n يوم</numerusform>
        </translation>
    </message>
    <message>
        <source>yt-dlp is not installed.</source>
        <translation>لم يُثبَّت yt-dlp.</translation>
    </message>
    <message>
        <source>yt-dlp %1 (%2), %3</source>
        <translation>‏yt-dlp %1 (%2)، %3</translation>
    </message>
    <message>
        <source>yt-dlp %1, %2</source>
        <translation>‏yt-dlp %1، %2</translation>
    </message>
    <message>
        <source>%1. Where the site finds it too old: %2.</source>
        <translation>%1. وحين يجده الموقع أقدم مما ينبغي: %2.</translation>
    </message>
    <message>
        <source>Update yt-dlp</source>
        <translation>تحديث yt-dlp</translation>
    </message>
    <message>
        <source>yt-dlp %1 is installed.</source>
        <translation>ثُبّت الإصدار %1 من yt-dlp.</translation>
    </message>
    <message>
        <source>yt-dlp is updated from %1 to %2.</source>
        <translation>حُدّث yt-dlp من %1 إلى %2.</translation>
    </message>
    <message>
        <source>yt-dlp %1 is the newest.</source>
        <translation>الإصدار %1 من yt-dlp هو الأحدث.</translation>
    </message>
</context>
</TS>
