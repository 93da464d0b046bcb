// The XML form of the program association table.

#include <quillon/sections/pat.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon {

bool Pat::_save_section(void* document, void* node) const {
  return xml::save_table_list(document, node, "program_infos", "program_info", programs_,
                              [](const program_info& program, void* doc, void* element) {
                                xml::Writer out(doc, element);
                                out.add("sid", program.get_program_number());
                                return out.add("pmtpid", program.get_program_map_pid());
                              });
}

void Pat::_parse(void* node) {
  xml::load_list(node, "program_infos", xml::table_list_failures(), [this](void* item) {
    const auto attributes = xml::attributes_of(item, "failed to get attribute map");
    int program_number = 0;
    int program_map_pid = 0;
    if (GetAttributeValue(attributes.get(), "sid", program_number) < 0)
      throw error("failed to get sid attribute");
    if (GetAttributeValue(attributes.get(), "pmtpid", program_map_pid) < 0)
      throw error("failed to get pid node");
    add(program_info(program_number, program_map_pid));
  });
}

}  // namespace quillon
