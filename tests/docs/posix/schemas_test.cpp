// What is saved and printed is what the schemas in docs say, for validators that others wrote.

#include "tests/app/program.h"
#include "tests/support/docs/observed.h"
#include "tests/xml/kept_documents.h"

#include <sstream>
#include <vector>

using namespace quillon::test;

namespace {

namespace fs = std::filesystem;

class Schemas : public Program {
 protected:
  void SetUp() override {
    Program::SetUp();
    if (const char* const data = std::getenv("QUILLON_DATA")) top_ = fs::path(data).parent_path();
    if (top_.empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  }

  // The bundled streams, and the captures where there are some.
  std::vector<fs::path> streams() const {
    std::vector<fs::path> out = {top_ / "data/sample.ts", top_ / "data/sample-atsc.ts"};
    if (const char* const captures = std::getenv("QUILLON_STREAMS"); captures && fs::is_directory(captures))
      for (const auto& entry : fs::directory_iterator(captures))
        if (entry.path().extension() == ".ts" || entry.path().extension() == ".bin")
          out.push_back(entry.path());
    return out;
  }

  std::string put(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return (folder_ / name).string();
  }
  // What is said of a file: nothing if it is valid.
  std::string said_by(const std::string& command) const {
    const std::string log = (folder_ / "said.txt").string();
    return run_in_shell(command + " >'" + log + "' 2>&1") == 0 ? "" : whole(log) + "it is refused";
  }

  fs::path top_;
};

class RelaxNg : public Schemas {
 protected:
  void SetUp() override {
    Schemas::SetUp();
    if (run_in_shell("command -v xmllint >/dev/null") != 0) GTEST_SKIP() << "no xmllint";
  }

  std::string said(const std::string& document, const fs::path& grammar) const {
    return said_by("xmllint --huge --noout --nonet --relaxng '" + grammar.string() + "' '" + document + "'");
  }
  std::string said(const std::string& document) const {
    return said(document, top_ / "docs/schema/quillon.rng");
  }
};

class JsonSchema : public Schemas {
 protected:
  void SetUp() override {
    Schemas::SetUp();
    if (run_in_shell("python3 -c 'import jsonschema' 2>/dev/null") != 0)
      GTEST_SKIP() << "no python3-jsonschema";
    validator_ = put("validate.py",
                     "import json, sys\n"
                     "from jsonschema import Draft202012Validator\n"
                     "schema = json.load(open(sys.argv[1]))\n"
                     "Draft202012Validator.check_schema(schema)\n"
                     "validator = Draft202012Validator(schema)\n"
                     "for line in open(sys.argv[2], encoding='utf-8'):\n"
                     "    failure = next(validator.iter_errors(json.loads(line)), None)\n"
                     "    print(failure.json_path + ': ' + failure.message[:500] if failure else 'good')\n");
  }

  // Of each line "good", or what is wrong with it.
  std::vector<std::string> verdicts(const std::string& lines) const {
    const std::string said = (folder_ / "said.txt").string();
    EXPECT_EQ(
        run_in_shell("python3 '" + validator_ + "' '" + (top_ / "docs/schema/quillon.schema.json").string() +
                     "' '" + put("lines.json", lines) + "' >'" + said + "'"),
        0);
    std::vector<std::string> out;
    std::istringstream in(whole(said));
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
  }

  void expect_good(const std::string& lines) const {
    EXPECT_NE(lines, "");
    for (const std::string& verdict : verdicts(lines)) EXPECT_EQ(verdict, "good");
  }

  std::string validator_;
};

// `text` with the first `from` in it changed.
std::string with(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, text.npos) << from;
  return text.replace(at, from.size(), to);
}

}  // namespace

TEST_F(RelaxNg, HasEveryDocumentThatTheProgramWrites) {
  for (const fs::path& stream : streams()) {
    run("xml -o saved.xml \"" + stream.string() + "\"");
    EXPECT_EQ(said((folder_ / "saved.xml").string()), "") << stream;
  }
}

TEST_F(RelaxNg, HasEveryClassThatIsKept) {
  std::string classes;
  for (const DescriptorFamily& family : descriptor_families())
    for (const DescriptorKind& kind : family.kinds) classes += "<ref name='" + kind.class_name + "'/>";
  const std::string grammar =
      put("kept.rng", "<grammar xmlns='http://relaxng.org/ns/structure/1.0'><include href='" +
                          (top_ / "docs/schema/quillon.rng").string() +
                          "'><start><element name='documents'><zeroOrMore><choice><ref name='table'/>"
                          "<element name='d'><choice>" +
                          classes +
                          "</choice></element></choice></zeroOrMore></element></start></include></grammar>");
  for (const char* const name : {"tree.xml", "system.xml"})
    EXPECT_EQ(said(kept_document(name).string(), grammar), "") << name;
}

TEST_F(RelaxNg, RefusesWhatNoSaveWrites) {
  run("xml -o saved.xml \"" + (top_ / "data/sample.ts").string() + "\"");
  const std::string saved = whole(folder_ / "saved.xml");
  for (const std::string& wrong : {
           with(saved, " version_number=\"3\"", ""),
           with(saved, " version_number=\"3\"", " version_number=\"three\""),
           with(saved, " version_number=\"3\"", " version_number=\"3\" more=\"1\""),
           with(saved, "<program_info ", "<other/><program_info "),
           with(saved, "private_bytes=\"\"", "private_bytes=\"0\""),
           with(saved, "<descriptors />", "<descriptors><atsc_genre_descriptor/></descriptors>"),
           with(saved, "start_time=\"22 11 2026", "start_time=\"2026"),
       })
    EXPECT_NE(said(put("wrong.xml", wrong)), "");
  EXPECT_EQ(said(put("right.xml", saved)), "");
}

TEST_F(JsonSchema, HasEveryLineThatTheProgramPrints) {
  std::string lines;
  for (const fs::path& stream : streams()) lines += run("json \"" + stream.string() + "\"").out;
  expect_good(lines);
}

TEST_F(JsonSchema, HasLinesOfSeveralInputs) {
  const std::string name = (top_ / "data/sample.ts").string();
  const std::string lines = run("json --table 0x70 \"" + name + "\" \"" + name + "\"").out;
  EXPECT_NE(lines.find("\"input\""), lines.npos);
  expect_good(lines);
}

TEST_F(JsonSchema, RefusesWhatIsNeverPrinted) {
  const std::string lines = run("json --table 0x42 \"" + (top_ / "data/sample.ts").string() + "\"").out;
  const std::string line = lines.substr(0, lines.find('\n') + 1);
  const std::vector<std::string> found = verdicts(
      line + with(line, "\"table\":\"sdt\"", "\"table\":\"other\"") +
      with(line, "\"table\":\"sdt\"", "\"table\":\"eit\"") + with(line, "\"table\":\"sdt\",", "") +
      with(line, "\"pid\":17", "\"pid\":\"17\"") + with(line, "\"running_status\":4,", "") +
      with(line, "\"running_status\":4,", "\"running_status\":4,\"more\":1,") +
      with(line, "\"descriptor\":\"service_descriptor\"", "\"descriptor\":\"atsc_genre_descriptor\"") +
      with(line, "\"service_type\":", "\"service_kind\":"));
  ASSERT_EQ(found.size(), 9u);
  EXPECT_EQ(found[0], "good");
  for (size_t i = 1; i < found.size(); ++i) EXPECT_NE(found[i], "good") << i;
}
