// The manual page and the completions, by those who read them.

#include "apps/quillon/command_line.h"
#include "tests/app/program.h"

using namespace quillon::app;
using namespace quillon::test;

namespace {

class Manual : public Program {
 protected:
  // What a command says of the files of the manual, in the folder of the test; none if there is no such
  // program.
  std::optional<Result> ask(const std::string& program, const std::string& command) {
    if (run_in_shell("command -v " + program + " >/dev/null") != 0) return std::nullopt;
    const auto put = [this](const char* name, const std::string& text) {
      file(name, Bytes(text.begin(), text.end()));
    };
    put("quillon.1", manual_page());
    put("quillon.bash", bash_completion());
    put("_quillon", zsh_completion());
    put("quillon.fish", fish_completion());
    const int code =
        run_in_shell("cd '" + folder_.string() + "' && { " + command + "\n} >out.txt 2>messages.txt");
    return Result{code, whole(folder_ / "out.txt"), whole(folder_ / "messages.txt")};
  }
};

}  // namespace

TEST_F(Manual, IsTakenByFormatters) {
  bool is_asked = false;
  for (const auto& [program, command] : {std::pair("groff", "groff -man -ww -Tutf8 -P-cbou quillon.1"),
                                         std::pair("man", "man --warnings -l quillon.1"),
                                         std::pair("mandoc", "mandoc -Tlint -Werror quillon.1")}) {
    const std::optional<Result> result = ask(program, command);
    if (!result) continue;
    is_asked = true;
    EXPECT_EQ(result->code, 0) << program;
    EXPECT_EQ(result->messages, "") << program;
    if (std::string(program) != "mandoc") {
      EXPECT_NE(result->out.find("NAME"), std::string::npos) << program;
    } else {
      EXPECT_EQ(result->out, "");
    }
  }
  if (!is_asked) GTEST_SKIP() << "neither groff nor man nor mandoc is there";
}

TEST_F(Manual, CompletesInBash) {
  const auto completed = [this](const std::string& words) {
    const std::optional<Result> result =
        ask("bash", "bash --norc -c '. ./quillon.bash; COMP_WORDS=(quillon " + words +
                        "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _quillon; echo ${COMPREPLY[*]}'");
    EXPECT_EQ(result ? result->messages : "", "");
    return result ? result->out : "no bash";
  };
  if (completed("su") == "no bash") GTEST_SKIP() << "bash is not there";
  EXPECT_EQ(completed("su"), "summary\n");
  EXPECT_EQ(completed("se"), "services sections\n");
  EXPECT_EQ(completed("json --re"), "--reading\n");
  EXPECT_EQ(completed("json --reading st"), "standard\n");
  EXPECT_EQ(completed("json --out"), "\n");
  EXPECT_EQ(completed("xml --out"), "--output\n");
  EXPECT_EQ(completed("xml -o quillon.f"), "quillon.fish\n");
  EXPECT_EQ(completed("summary quillon.f"), "quillon.fish\n");
}

TEST_F(Manual, CompletesInFish) {
  const auto completed = [this](const std::string& line) {
    const std::optional<Result> result = ask(
        "fish", "HOME=$PWD fish --no-config -c 'source quillon.fish; complete -C \"quillon " + line + "\"'");
    EXPECT_EQ(result ? result->messages : "", "");
    return result ? result->out : "no fish";
  };
  if (completed("su") == "no fish") GTEST_SKIP() << "fish is not there";
  EXPECT_EQ(completed("su").rfind("summary\t", 0), 0u) << completed("su");
  EXPECT_EQ(completed("json --rea").rfind("--reading\t", 0), 0u) << completed("json --rea");
  EXPECT_EQ(completed("json --reading st").rfind("standard", 0), 0u) << completed("json --reading st");
}

TEST_F(Manual, CompletesInZsh) {
  // The functions that a completion calls, as the shell has them while it completes, write down what they are
  // told.
  const auto completed = [this](const std::string& words, int current) {
    const std::optional<Result> result = ask(
        "zsh",
        "zsh -f -c 'words=(quillon " + words + "); CURRENT=" + std::to_string(current) +
            "; _describe() { print -l -- $commands; }; _arguments() { print -l -- \"$@\"; }; . ./_quillon'");
    EXPECT_EQ(result ? result->messages : "", "");
    return result ? result->out : "no zsh";
  };
  if (completed("su", 2) == "no zsh") GTEST_SKIP() << "zsh is not there";
  EXPECT_NE(completed("su", 2).find("summary:Tell what a stream is"), std::string::npos);
  EXPECT_NE(completed("json --re", 3).find("*--reading["), std::string::npos);
  EXPECT_NE(completed("json --re", 3).find(":(kept standard)\n"), std::string::npos);
  EXPECT_EQ(completed("names x", 3).find("*--reading["), std::string::npos);
}
