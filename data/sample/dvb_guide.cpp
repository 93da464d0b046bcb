#include "data/sample/dvb_guide.h"

namespace quillon::sample {

const Guide quill_one = {
    TextTable::iso_6937,
    "eng",
    "GBR",
    "Feather",
    "Quill One",
    {
        {60, film, "The Lamplighter", "A town loses its light, and one man keeps a match.", 12},
        {150, music, "Night Shift", "Slow records for those who are awake."},
        {150, documentary, "The Long Coast", "On foot from Cape Wrath to Land’s End."},
        {60, news, "Morning Edition", "News, weather and what the papers say."},
        {120, children, "Inkpot Island", "Six friends, one boat and no map."},
        {90, cooking, "A Pinch of Salt", "Three cooks, one market, £10."},
        {90, arts, "Paper Trail", "Where the letters of a lifetime went."},
        {30, news, "Noon News", "The day so far."},
        {60, arts, "Ink and Paper", "How a book is bound.", 0,
         "From the folded sheet to the finished spine: a bindery in Leeds makes one book, and shows each of "
         "the forty steps that nobody sees afterwards. The thread is linen, the glue is made of wheat, and "
         "the "
         "press is older than anyone who works it.",
         "Presented by", "Harriet Ashgrove"},
        {120, sports, "Rugby: Northern Cup", "The quarter-final, live."},
        {90, science, "Small Machines", "What a watch knows about time."},
        {90, talk, "Kitchen Table", "Four guests and a pot of tea."},
        {60, news, "Evening News", "The day, and what it means."},
        {60, drama, "Harbour Lights", "Nora finds the letter. Part 4 of 6.", 12,
         "The ferry is late, the harbour master is not at his desk, and Nora has twenty minutes with a "
         "drawer "
         "that was locked for thirty years. Her brother knows what is in it.",
         "Written by", "Edmund Pellow"},
        {120, film, "Cold Harbour", "A lighthouse keeper sees what the radar doesn’t.", 16},
        {60, news, "Late Edition", "Tomorrow’s front pages tonight."},
        {30, music, "Quill Sessions", "One singer, one microphone."},
    }};

const Guide cafe_radio = {
    TextTable::iso_6937,
    "fra",
    "FRA",
    "Feather",
    "Café Radio",
    {
        {180, music, "Nuit blanche", "La musique des heures où tout se tait."},
        {180, classical, "Avant l’aube", "Piano, cordes et silence."},
        {120, news, "Le réveil", "Infos, météo et revue de presse."},
        {120, talk, "À voix haute", "Un livre lu par celle qui l’a écrit."},
        {120, classical, "Concert du matin", "L’orchestre de la vallée joue Fauré."},
        {60, cooking, "Le goût des autres", "Recettes d’été pour l’hiver."},
        {120, documentary, "Grand angle", "Un canal, deux écluses et mille péniches.", 0,
         "Le long du canal, les éclusiers racontent un métier qui disparaît : les nuits de gel, les crues, "
         "les "
         "enfants nés à bord. Un reportage en trois étapes."},
        {120, music, "Chansons de café", "Accordéon et belles paroles."},
        {120, society, "Le débat", "Faut-il vivre plus près ?"},
        {60, news, "Le journal du soir", "L’essentiel de la journée."},
        {180, classical, "Soirée à l’opéra", "En direct, avec l’entracte."},
        {60, talk, "Dernière tasse", "Une question, un invité, minuit."},
    }};

const Guide suedwind = {
    TextTable::latin_5,
    "deu",
    "DEU",
    "Südwind Medien",
    "Südwind",
    {
        {120, film, "Über den Pass", "Zwei Brüder, ein Maultier und der erste Schnee.", 12},
        {180, documentary, "Schienen der Welt", "Im Führerstand durch die Nacht."},
        {60, society, "Frühmesse", "Aus der Stiftskirche."},
        {120, news, "Guten Morgen Süden", "Nachrichten, Wetter, Verkehr."},
        {120, children, "Krümel und Käthe", "Die Suche nach dem größten Löffel."},
        {120, cooking, "Gemüse zuerst", "Kürbis, Rüben und was übrig bleibt."},
        {60, news, "Mittagsmagazin", "Was heute wichtig ist."},
        {90, nature, "Das Moor", "Ein Jahr zwischen Torf und Wollgras.", 0,
         "Wo das Wasser nicht abfließt, wächst seit zehntausend Jahren ein Archiv. Die Kamera begleitet "
         "Kraniche, Kreuzottern und eine Forscherin, die Pollenkörner zählt.",
         "Buch und Regie", "Jördis Mühlenbrock"},
        {150, sports, "Skispringen", "Der zweite Durchgang von der Großschanze."},
        {60, talk, "Stammtisch", "Gäste aus Stadt und Land."},
        {120, drama, "Die Brücke am Fluss", "Familienserie, Folge 112."},
        {60, news, "Abendschau", "Die Nachrichten des Tages."},
        {120, film, "Nebel über Kärnten", "Ein Kommissar kehrt heim.", 12},
        {60, talk, "Nachtgespräch", "Zu Gast ist eine Uhrmacherin."},
    }};

const Guide aegean = {
    TextTable::greek,
    "ell",
    "GRC",
    "Κυκλάδες",
    "Αιγαίο Σινεμά",
    {
        {150, film, "Το καράβι της νύχτας", "Ένα ταξίδι χωρίς επιστροφή.", 16},
        {150, film, "Καλοκαίρι στη Σύρο", "Δύο φίλοι και ένα παλιό σπίτι.", 6},
        {120, documentary, "Νησιά και άνθρωποι", "Σφουγγαράδες της Καλύμνου."},
        {150, film, "Ο δάσκαλος", "Ένα χωριό μαθαίνει να διαβάζει."},
        {120, children, "Το μικρό δελφίνι", "Κινούμενα σχέδια."},
        {90, music, "Τραγούδια του Αιγαίου", "Βιολί, λαούτο και χορός."},
        {150, film, "Η κόρη του φαροφύλακα", "Μια βραδιά με καταιγίδα.", 12,
         "Η Ελένη μεγάλωσε μόνη με τον πατέρα της στον φάρο. Όταν ένα πλοίο χάνει τον δρόμο του, πρέπει να "
         "διαλέξει ανάμεσα στο φως και στη σιωπή."},
        {150, film, "Λεωφορείο 040", "Κωμωδία στους δρόμους του Πειραιά."},
        {60, talk, "Πίσω από την κάμερα", "Συνέντευξη με τον σκηνοθέτη."},
        {150, film, "Άνεμος από τον νότο", "Πρώτη προβολή.", 12},
        {150, film, "Μεσάνυχτα στο λιμάνι", "Αστυνομική περιπέτεια.", 16},
    }};

const Guide volna = {
    TextTable::cyrillic,
    "rus",
    "BGR",
    "Волна Медиа",
    "Волна Кино",
    {
        {135, film, "Последний паром", "Осень, река и незнакомец.", 12},
        {165, film, "Дом у озера", "Семья собирается в последний раз.", 16},
        {120, documentary, "Тайны тайги", "Экспедиция за редкой птицей."},
        {120, children, "Сказки старого леса", "Мультфильмы."},
        {105, film, "Солнечный зайчик", "Комедия о первом дне в школе."},
        {120, film, "Мост через реку", "История одной стройки.", 12},
        {150, film, "Зимний вечер", "Два поезда стоят на одной станции.", 12,
         "Снег остановил движение, и пассажиры двух поездов проводят ночь в маленьком вокзале. К утру у "
         "каждого будет новая дорога.",
         "Режиссёр", "Лидия Верещак"},
        {120, science, "Как это работает", "Часы, замки и весы."},
        {60, news, "Новости кино", "Премьеры недели."},
        {165, film, "Капитан дальнего плавания", "Приключения на севере.", 12},
        {180, film, "Белые ночи города", "Мелодрама.", 16},
    }};

const Guide oasis = {
    TextTable::arabic,
    "ara",
    "MAR",
    "شبكة النخيل",
    "قناة النخيل",
    {
        {180, music, "ليالي الطرب", "أغان من الزمن الجميل."},
        {120, society, "نور الفجر", "حديث الصباح الباكر."},
        {120, news, "صباح الخير", "أخبار وطقس وضيوف."},
        {150, children, "حكايات جدتي", "قصص للصغار."},
        {120, cooking, "مطبخ الواحة", "أطباق من الجنوب."},
        {90, documentary, "دروب الصحراء", "رحلة مع القوافل القديمة.", 0,
         "من تافيلالت إلى تمبكتو، يتبع الفيلم آثار القوافل وآبارها، ويسأل من بقي يعرف أسماء النجوم."},
        {60, news, "نشرة الظهر", "أهم أخبار اليوم."},
        {150, sports, "كرة القدم", "مباراة الأسبوع."},
        {120, drama, "بيت العائلة", "الحلقة الخامسة."},
        {90, arts, "ديوان", "شعر وموسيقى."},
        {60, news, "نشرة المساء", "أخبار العالم."},
        {180, film, "الجسر القديم", "فيلم السهرة.", 12},
    }};

const Guide galilee = {TextTable::hebrew,
                       "heb",
                       "ISR",
                       "רדיו הצפון",
                       "קול הגליל",
                       {
                           {240, music, "שירי לילה", "מוזיקה שקטה עד הבוקר."},
                           {120, music, "בוקר אור", "שירים לתחילת היום."},
                           {120, news, "יומן הבוקר", "חדשות ומזג אוויר."},
                           {120, talk, "על הספסל", "שיחות עם שכנים."},
                           {120, classical, "הקונצרט", "רביעייה מן הכרמל."},
                           {60, news, "יומן הצהריים", "עיקר החדשות."},
                           {120, documentary, "סיפור מקום", "הגשר שמעל הנחל."},
                           {120, children, "שעת סיפור", "אגדות לילדים."},
                           {120, music, "שירים ושבילים", "הבקשות שלכם."},
                           {60, news, "יומן הערב", "סיכום היום."},
                           {180, talk, "לפני חצות", "אורח אחד ושאלה אחת."},
                           {60, music, "אור אחרון", "שיר לסוף היום."},
                       }};

const Guide star_river = {
    TextTable::utf_8,
    "zho",
    "HKG",
    "星河傳媒",
    "星河衛視",
    {
        {120, film, "夜行列車", "一封沒有寄出的信。", 12},
        {180, documentary, "山的那一邊", "走進雲南的古道。"},
        {60, music, "晨曲", "古琴與竹笛。"},
        {120, news, "早安星河", "新聞、天氣與交通。"},
        {120, children, "小龍歷險記", "動畫片。"},
        {90, cooking, "一碗麵", "從麵粉到餐桌。"},
        {60, news, "午間新聞", "今日要聞。"},
        {120, drama, "茶館風雲", "第十二集。", 0,
         "老茶館要拆了，三代人卻還沒有說完他們的故事。今晚，掌櫃打開了那只鎖了四十年的箱子。", "導演",
         "沈若水"},
        {150, sports, "乒乓球公開賽", "男子單打決賽。"},
        {120, science, "星空之下", "望遠鏡能看多遠？"},
        {60, talk, "對話", "與建築師談城市。"},
        {60, news, "晚間新聞", "一日回顧。"},
        {120, film, "江上", "新片首播。", 12},
        {60, arts, "燈下", "睡前讀一首詩。"},
    }};

const Guide hanbit = {TextTable::utf_16,
                      "kor",
                      "KOR",
                      "한빛미디어",
                      "한빛 TV",
                      {
                          {780, news, "저녁 뉴스", "오늘의 주요 소식."},
                          {660, travel, "골목 산책", "오래된 골목을 걷는다."},
                      }};

const Guide azores = {TextTable::latin_1,
                      "por",
                      "PRT",
                      "Ilhas FM",
                      "Rádio Açores",
                      {
                          {765, music, "Manhã das Ilhas", "Canções para a manhã de domingo."},
                          {675, news, "Jornal da Tarde", "Notícias, tempo e ligações aéreas."},
                      }};

}  // namespace quillon::sample
