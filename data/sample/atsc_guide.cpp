#include "data/sample/atsc_guide.h"

namespace quillon::sample {

namespace {

constexpr uint8_t kTelevision = 0x02;
constexpr uint8_t kAudio = 0x03;

}  // namespace

const std::vector<Channel> atsc_channels = {
    {1,
     kTelevision,
     "INKWELL",
     "Inkwell Television",
     "News, drama and sport for the valley.",
     "eng",
     "spa",
     {
         {120, tv_g, newscast, "Good Morning Valley", "News, weather and traffic, every ten minutes.",
          "Buenos días, valle"},
         {60, tv_g, education, "The Repair Bench", "A radio from 1938 plays again."},
         {60, tv_pg, entertainment, "Second Helping", "Two cooks share one kitchen and one hour."},
         {30, tv_g, newscast, "Noon Report", "", "Noticias del mediodía"},
         {90, tv_pg, entertainment, "Harbor Street", "Nora opens the letter, and the shop stays closed."},
         {180, tv_pg, sporting, "College Football", "The Herons meet the Millers at home.",
          "Fútbol americano"},
         {60, tv_g, newscast, "Evening Edition", "The day, and what it means."},
         {120, tv_14, movie, "The Long Ferry", "A storm, a crossing and a passenger without a name.",
          "El largo viaje"},
     }},
    {2,
     kTelevision,
     "TINTA",
     "Tinta Televisión",
     "La televisión del valle, en español.",
     "spa",
     "eng",
     {
         {90, tv_g, newscast, "Despierta, valle", "Noticias, tráfico y el tiempo de la mañana."},
         {60, tv_g, education, "Pequeños inventores", "¿Por qué flota un barco de papel?"},
         {90, tv_pg, entertainment, "La cocina de Inés", "Tamales, champurrado y una sorpresa."},
         {60, tv_g, newscast, "Noticiero del mediodía"},
         {120, tv_pg, movie, "El farolero", "Un pueblo se queda sin luz.", "The Lamplighter"},
         {60, tv_pg, entertainment, "Corazón de añil", "Capítulo 48: la carta."},
         {120, tv_g, sporting, "Fútbol: clásico del norte", "En vivo desde el estadio."},
         {120, tv_14, movie, "Medianoche en la estación", "Dos trenes, una maleta y ningún testigo."},
     }},
    {3,
     kTelevision,
     "SKYCAM",
     "Skycam Weather",
     "The sky over the valley, all day long.",
     "eng",
     "",
     {
         {180, tv_g, newscast, "Sunrise Radar", "Fog in the low fields until ten."},
         {180, tv_g, newscast, "Midday Radar"},
         {180, tv_g, newscast, "Afternoon Radar", "Wind from the north by evening."},
         {180, tv_g, newscast, "Night Sky", "Jupiter, and where to look for it."},
     }},
    {4,
     kAudio,
     "LUNA FM",
     "Luna FM",
     "Música de ayer y de hoy.",
     "spa",
     "",
     {
         {180, tv_g, entertainment, "Café con música", "Boleros para empezar el día."},
         {180, tv_g, entertainment, "Siesta", "Guitarra y poco más."},
         {180, tv_g, entertainment, "Tarde de verbena"},
         {180, tv_g, entertainment, "Luna llena", "Jazz hasta la medianoche."},
     }},
};

}  // namespace quillon::sample
