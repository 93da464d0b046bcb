#include <array>

#include <quillon/descriptors/event/content.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

constexpr const char* kUndefined = "undefined/user defined/reserved for future use";

// Misspelt names are kept on both levels: applications show and compare them.
const char* level1_text(int nibble) {
  return detail::text_of(nibble,
                         {kUndefined, "Movie/Drama", "News/Current affairs", "Show/Game show", "Sports",
                          "Children/Youth programmes", "Music/Ballet/Dance", "Arts/Culture (without music)",
                          "Social/Political issues/Economics", "Education/Science/Factual topics",
                          "Leisure/Hobbies", "Special Charateristics"},
                         kUndefined);
}

struct Genre {
  uint8_t nibbles;
  const char* text;
};
constexpr Genre kGenres[] = {
    {0x10, "movie/drama (general)"},
    {0x11, "detective/thriller"},
    {0x12, "adventure/western/war"},
    {0x13, "science fiction/fantasy/horror"},
    {0x14, "comedy"},
    {0x15, "soap/melodrama/folkloric"},
    {0x16, "romance"},
    {0x17, "serious/classical/religious/historical movie/drama"},
    {0x18, "adult movie/drama"},
    {0x20, "news/current affairs (general)"},
    {0x21, "news/weather report"},
    {0x22, "news magazine"},
    {0x23, "documentary"},
    {0x24, "discussion/interview/debate"},
    {0x30, "show/game show (general)"},
    {0x31, "game show/quiz/contest"},
    {0x32, "variety show"},
    {0x33, "talk show"},
    {0x40, "sports (general)"},
    {0x41, "special events (Olympic Games, World Cupt etc.)"},
    {0x42, "sports magazines"},
    {0x43, "football/soccer"},
    {0x44, "tennis/squash"},
    {0x45, "team sports (exluding football)"},
    {0x46, "athletics"},
    {0x47, "motor sport"},
    {0x48, "water sport"},
    {0x49, "winther sports"},
    {0x4A, "equestrian"},
    {0x4B, "martial sports"},
    {0x50, "children/youth programmes (general)"},
    {0x51, "pre-school children's programmes"},
    {0x52, "entertainment programmes for 6 - 14"},
    {0x53, "entertainment programmes for 10 - 16"},
    {0x54, "informational/educational/schools programmes"},
    {0x55, "cartoons/puppets"},
    {0x60, "music/ballet/dance (general)"},
    {0x61, "rock/pop"},
    {0x62, "serious music/classical music"},
    {0x63, "folk/tradional music"},
    {0x64, "jazz"},
    {0x65, "musical/opera"},
    {0x66, "ballet"},
    {0x70, "arts/culture (without music) (general)"},
    {0x71, "performing arts"},
    {0x72, "fine arts"},
    {0x73, "religion"},
    {0x74, "popular culture/traditional arts"},
    {0x75, "literature"},
    {0x76, "film/cinema"},
    {0x77, "experimental film/video"},
    {0x78, "broadcasting/press"},
    {0x79, "new media"},
    {0x7A, "arts/culture magazines"},
    {0x7B, "fashion"},
    {0x80, "social/political issues/economics (general)"},
    {0x81, "magazines/reports/documentary"},
    {0x82, "economics/social advisory"},
    {0x83, "remarkable people"},
    {0x90, "education/science/factual topics (general)"},
    {0x91, "nature/animals/environment"},
    {0x92, "technology/natural sciences"},
    {0x93, "medicine/physiology/psychology"},
    {0x94, "foriegn countries/expeditions"},
    {0x95, "social/spiritual sciences"},
    {0x96, "further education"},
    {0x97, "languages"},
    {0xA0, "leisure/hobbies (general)"},
    {0xA1, "tourism/travel"},
    {0xA2, "handicraft"},
    {0xA3, "motoring"},
    {0xA4, "fitness & health"},
    {0xA5, "cooking"},
    {0xA6, "advertisement/shopping"},
    {0xA7, "gardening"},
    {0xB0, "origianl language"},
    {0xB1, "black & white"},
    {0xB2, "unpublished"},
    {0xB3, "live broadcast"},
};

constexpr unsigned kFirst = 0x10;
constexpr unsigned kLast = 0xB3;

// The texts by their nibbles, counted from kFirst.
constexpr auto kLevel2 = [] {
  std::array<const char*, kLast - kFirst + 1> out{};
  out.fill(kUndefined);
  for (const Genre& genre : kGenres) out[genre.nibbles - kFirst] = genre.text;
  return out;
}();

const char* level2_text(int level_1, int level_2) {
  const unsigned i = static_cast<unsigned>(level_1) * 16 + static_cast<unsigned>(level_2) - kFirst;
  return i < kLevel2.size() ? kLevel2[i] : kUndefined;
}

}  // namespace

const char* DescriptorContent::Content::get_content_nibble_level1_text() const {
  return level1_text(content_nibble_level_1_);
}

const char* DescriptorContent::Content::get_content_nibble_level2_text() const {
  return level2_text(content_nibble_level_1_, content_nibble_level_2_);
}

// Quirk: content nibble texts
const char* DescriptorContent::Content::standard_content_nibble_level1_text(int level_1) {
  if (level_1 == 0) return "undefined content";
  if (level_1 == 0xC) return "Adult";
  if (level_1 == 0xF) return "user defined";
  return level_1 > 0xC ? "reserved for future use" : level1_text(level_1);
}

const char* DescriptorContent::Content::standard_content_nibble_level2_text(int level_1, int level_2) {
  if (level_1 == 0) return "undefined content";
  if (level_1 == 0xF || (level_2 == 0xF && level_1 <= 0xC)) return "user defined";
  switch (level_1 << 4 | level_2) {
    case 0xB4:
      return "plano-stereoscopic";
    case 0xB5:
      return "local or regional";
    case 0xC0:
      return "adult (general)";
    default: {
      const char* const text = level2_text(level_1, level_2);
      return text == kUndefined ? "reserved for future use" : text;
    }
  }
}

template <class V, class S>
void DescriptorContent::Content::describe(V& v, S& s) {
  v.coded("content_nibble_level1", s.content_nibble_level_1_,
          {level1_text, standard_content_nibble_level1_text});
  if constexpr (V::walk)
    v.coded("content_nibble_level2", s.content_nibble_level_2_,
            {s.get_content_nibble_level2_text(),
             standard_content_nibble_level2_text(s.content_nibble_level_1_, s.content_nibble_level_2_)});
  else
    v.field("content_nibble_level2", s.content_nibble_level_2_);
  v.field("user_nibble1", s.user_nibble1_);
  v.field("user_nibble2", s.user_nibble2_);
}
QUILLON_RECORD_FACES_OF(DescriptorContent::Content)

DescriptorContent::DescriptorContent(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 2 != 0) throw error("descriptor length mismatch");
  read_rows(contents_, d, 2, descriptor_length, 2);
}

template <class V, class S>
void DescriptorContent::describe(V& v, S& s) {
  v.list("contents", "content", s.contents_);
}
QUILLON_FACES_OF(DescriptorContent, "content_descriptor")

}  // namespace quillon
