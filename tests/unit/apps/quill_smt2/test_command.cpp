// Runs the command itself, through the shell.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

namespace {

const std::string command = QUILL_SMT2_COMMAND;

class Command : public testing::Test {
 protected:
  Command() {
    std::string name = testing::TempDir() + "quill-smt2-XXXXXX";
    if (mkdtemp(name.data()) != nullptr) folder = name;
  }
  ~Command() override { std::filesystem::remove_all(folder); }

  std::string path(const std::string& name) const { return folder + "/" + name; }

  std::string write_file(const std::string& name, const std::string& text) const {
    std::ofstream(path(name)) << text;
    return path(name);
  }

  std::string content(const std::string& name) const {
    std::ifstream file(path(name));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  // Runs the command with what the shell makes of the arguments; sets output, errors and status.
  void run(const std::string& arguments) {
    const std::string line = "'" + command + "' " + arguments;
    run_line("(" + line + ") > '" + path("out") + "' 2> '" + path("err") + "'");
  }

  void run_line(const std::string& line) {
    const int result = std::system(line.c_str());
    ASSERT_TRUE(WIFEXITED(result));
    status = WEXITSTATUS(result);
    output = content("out");
    errors = content("err");
  }

  std::string folder;
  std::string output;
  std::string errors;
  int status = -1;
};

const std::string script = "(declare-const p Bool)(assert (and p p))";
const std::string script_printed = "(declare-const p Bool)\n(assert (and p p))\n";

TEST_F(Command, PrintsAFile) {
  run("print " + write_file("a.smt2", script));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, script_printed);
  EXPECT_EQ(errors, "");
}

TEST_F(Command, PrintsStandardInput) {
  run("print - < " + write_file("a.smt2", script));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, script_printed);
}

TEST_F(Command, PrintsTheStandardOrExtensions) {
  const std::string text = "(declare-const b (_ BitVec 2))\n(assert (= (sbv_to_int b) 1))\n";
  const std::string file = write_file("a.smt2", text);
  run("print " + file);
  EXPECT_EQ(output,
            "(declare-const b (_ BitVec 2))\n"
            "(assert (= (- (bv2nat b) (ite (= ((_ extract 1 1) b) (_ bv1 1)) 4 0)) 1))\n");
  run("print --extensions " + file);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, text);
}

TEST_F(Command, ShowsStatisticsWithoutTiming) {
  run("stats --no-timing " + write_file("a.smt2", script));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output,
            "commands: 2\n"
            "assertions: 1\n"
            "terms: 2\n"
            "symbols: 2 (1 interpreted, 1 uninterpreted)\n"
            "types: 1\n"
            "depth: 2\n"
            "size as a graph: 2\n"
            "size as a tree: 3\n"
            "sharing: 1.50\n");
}

TEST_F(Command, ShowsTimeAndMemoryOnTheLastLine) {
  run("stats " + write_file("a.smt2", script));
  EXPECT_EQ(status, 0);
  const std::regex expected(
      "[^]*sharing: 1\\.50\ntime: [0-9]+\\.[0-9]{3} s, memory: [0-9]+\\.[0-9] MiB\n");
  EXPECT_TRUE(std::regex_match(output, expected)) << output;
}

TEST_F(Command, SaysWhereAScriptIsFaulty) {
  const std::string file = write_file("a.smt2", "(check-sat)\n(assert q)");
  run("print " + file);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(output, "");
  EXPECT_EQ(errors, file + ":2:9: error: unknown symbol 'q'\n");
}

TEST_F(Command, SaysWhereStandardInputIsFaulty) {
  run("stats - < " + write_file("a.smt2", "(assert q)"));
  EXPECT_EQ(status, 1);
  EXPECT_EQ(output, "");
  EXPECT_EQ(errors, "<stdin>:1:9: error: unknown symbol 'q'\n");
}

TEST_F(Command, SaysThatAFileIsMissing) {
  run("print " + path("none"));
  EXPECT_EQ(status, 1);
  EXPECT_EQ(errors, path("none") + ": error: cannot be opened: No such file or directory\n");
}

TEST_F(Command, SaysThatAFileIsADirectory) {
  run("print " + folder);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(errors, folder + ": error: is a directory\n");
}

TEST_F(Command, SaysThatAFileMayNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read every file";
  const std::string file = write_file("a.smt2", script);
  std::filesystem::permissions(file, std::filesystem::perms::none);
  run("print " + file);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(output, "");
  EXPECT_EQ(errors, file + ": error: cannot be opened: Permission denied\n");
}

TEST_F(Command, SaysThatAFileCannotBeRead) {
  // It can be opened, but its first page is never mapped.
  const std::string file = "/proc/self/mem";
  if (!std::filesystem::exists(file)) GTEST_SKIP() << "there is no " << file;
  run("print " + file);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(output, "");
  EXPECT_EQ(errors, file + ": error: the input cannot be read\n");
}

TEST_F(Command, SaysThatStandardInputCannotBeRead) {
  run("print - < " + folder);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(errors, "<stdin>: error: the input cannot be read\n");
}

TEST_F(Command, SaysThatTheDiskIsFull) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  const std::string file = write_file("a.smt2", script);
  run_line("'" + command + "' print " + file + " > /dev/full 2> '" + path("err") + "'");
  EXPECT_EQ(status, 1);
  EXPECT_EQ(errors, "standard output: error: cannot be written: No space left on device\n");
}

TEST_F(Command, EndsQuietlyWhenNobodyReads) {
  const std::string file = write_file("a.smt2", script);
  // The reader has gone by the time that the command begins.
  run_line("{ sleep 1; '" + command + "' print " + file + " 2> '" + path("err") + "'; echo $? > '" +
           path("status") + "'; } | true");
  while (content("status").empty()) std::system("sleep 0.1");
  EXPECT_EQ(content("status"), "1\n");
  EXPECT_EQ(errors, "");
}

const std::string scopes_script =
    "(declare-const x Int)(declare-const |a=b| Int)(assert (<= x |a=b|))"
    "(push 1)(declare-const y Int)(assert (<= y 7))(pop 1)";

TEST_F(Command, SubstitutesConstants) {
  const std::string file = write_file("a.smt2", scopes_script);
  run("substitute --set 'x=(+ |a=b| 1)' --set '|a=b|=5' " + file);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output,
            "(declare-const x Int)\n(declare-const a=b Int)\n(assert (<= (+ a=b 1) 5))\n"
            "(push 1)\n(declare-const y Int)\n(assert (<= y 7))\n(pop 1)\n");
}

TEST_F(Command, SaysWhatIsWrongWithASetting) {
  const std::string file = write_file("a.smt2", scopes_script + "(define-fun d () Int 3)");
  const auto message = [&](const std::string& setting) {
    run("substitute --set '" + setting + "' " + file);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(output, "");
    return errors.substr(file.size());
  };
  EXPECT_EQ(message("x"), ": error: 'x' is not NAME=TERM\n");
  EXPECT_EQ(message("|a=b|"), ": error: '|a=b|' is not NAME=TERM\n");
  EXPECT_EQ(message("q=1"), ": error: in 'q=1': unknown symbol 'q'\n");
  EXPECT_EQ(message("y=1"), ": error: in 'y=1': 'y' is declared in a scope that has ended\n");
  EXPECT_EQ(message("x=d"),
            ": error: in 'x=d': 'd' is defined: what it stands for is in its place\n");
  EXPECT_EQ(message("x=q"), ": error: in 'x=q': unknown symbol 'q'\n");
  EXPECT_EQ(message("x=(+ 1"), ": error: in 'x=(+ 1': the input ends where a term is expected\n");
  EXPECT_EQ(message("(+ x 1)=1"),
            ": error: '(+ x 1)=1' does not begin with the name of a constant\n");
  EXPECT_EQ(message("x=true"),
            ": error: in 'x=true': 'x' has sort Int, but the term has sort Bool\n");
  EXPECT_EQ(message("x=1' --set 'x=2"), ": error: in 'x=2': the constant is set twice\n");
}

TEST_F(Command, PrintsACopy) {
  const std::string file = write_file("a.smt2", scopes_script);
  run("print " + file);
  const std::string original = output;
  run("copy " + file);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, original);
}

TEST_F(Command, ReportsACollection) {
  run("gc " + write_file("a.smt2", scopes_script));
  EXPECT_EQ(status, 0);
  // y, 7 and their comparison go.
  EXPECT_EQ(output,
            "assertions kept: 1\n"
            "terms freed: 3 of 8\n"
            "symbols freed: 2 of 23\n"
            "types freed: 0 of 15\n"
            "memory given back: 0 bytes of terms in 0 slabs, 0 bytes of their index\n");
}

TEST_F(Command, PrintsAfterACollection) {
  const std::string file = write_file("a.smt2", scopes_script);
  run("print " + file);
  const std::string original = output;
  run("gc --print " + file);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(output, original);
}

TEST_F(Command, PrintsTheExamplesAsAFixedPoint) {
  size_t files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(QUILL_SOURCE_DIR "/examples/benchmarks")) {
    if (entry.path().extension() != ".smt2") continue;
    ++files;
    run("print '" + entry.path().string() + "'");
    EXPECT_EQ(status, 0) << entry.path();
    EXPECT_NE(output.find("(check-sat)"), std::string::npos) << entry.path();
    const std::string once = output;
    run("print '" + write_file("again.smt2", once) + "'");
    EXPECT_EQ(output, once) << entry.path();
  }
  EXPECT_EQ(files, 5u);
}

TEST_F(Command, DeclaresWhatASettingMentions) {
  run("substitute --set x=y " +
      write_file("a.smt2", "(declare-const x Int)(assert (<= x 0))(declare-const y Int)"));
  EXPECT_EQ(output, "(declare-const x Int)\n(declare-const y Int)\n(assert (<= y 0))\n");
  run("substitute --set 'x=(/ y 0)' " +
      write_file("a.smt2", "(declare-const x Real)(declare-const y Real)(assert (<= x 0.0))"));
  EXPECT_EQ(output,
            "(declare-const x Real)\n(declare-const y Real)\n"
            "(declare-fun quill!divide_by_zero (Real) Real)\n"
            "(assert (<= (quill!divide_by_zero y) 0.0))\n");
}

TEST_F(Command, LimitsWhatIsLargerThanItsText) {
  const std::string distinct = write_file("a.smt2", "(assert (distinct 1 2 3 4))\n");
  const std::string conversion =
      write_file("b.smt2", "(declare-const i Int)\n(assert (= ((_ int2bv 7) i) (_ bv1 7)))\n");
  const std::string few = " by now, but at most 5 are allowed\n";
  for (const std::string subcommand : {"print", "copy", "gc", "gc --print", "stats"}) {
    run(subcommand + " --max-expansion 5 " + distinct);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(output, "");
    EXPECT_EQ(errors,
              distinct + ":1:9: error: the pairs of all 'distinct' in the script are 6" + few);
    run(subcommand + " --max-expansion 6 " + distinct);
    EXPECT_EQ(status, 0);
  }
  for (const std::string subcommand : {"print", "copy", "gc --print"}) {
    run(subcommand + " --max-expansion 5 " + conversion);
    EXPECT_EQ(errors, conversion +
                          ":2:12: error: the bits of conversions and wide constants in "
                          "the script are 7" +
                          few);
    // What is not written bit by bit does not count.
    run(subcommand + " --extensions --max-expansion 5 " + conversion);
    EXPECT_EQ(status, 0);
  }
  for (const std::string subcommand : {"stats", "gc"}) {
    run(subcommand + " --max-expansion 5 " + conversion);
    EXPECT_EQ(status, 0);
  }
}

TEST_F(Command, SaysInOneLineWhatIsWrongWithItsArguments) {
  const auto message = [&](const std::string& arguments) {
    run(arguments);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(output, "");
    return errors;
  };
  EXPECT_EQ(message(""), "quill-smt2: error: A subcommand is required\n");
  for (const std::string arguments :
       {"frobnicate", "print", "print a b", "print --frobnicate a", "print --max-expansion x a",
        "substitute a", "substitute --set x=1"}) {
    const std::string text = message(arguments);
    EXPECT_EQ(text.substr(0, 19), "quill-smt2: error: ") << arguments;
    EXPECT_EQ(text.find('\n'), text.size() - 1) << arguments;
  }
}

TEST_F(Command, TellsItsVersion) {
  run("--version");
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(std::regex_match(output, std::regex("quill-smt2 [0-9]+\\.[0-9]+\\.[0-9]+\n")))
      << output;
  EXPECT_EQ(errors, "");
}

TEST_F(Command, ExplainsItself) {
  run("--help");
  EXPECT_EQ(status, 0);
  EXPECT_NE(output.find("print"), std::string::npos);
  EXPECT_EQ(errors, "");
}

TEST_F(Command, ReadsDeepTermsOnASmallStack) {
  std::string deep = "(declare-const p Bool)(assert ";
  for (int i = 0; i < 1000000; ++i) deep += "(not ";
  deep += "p";
  deep.append(1000000, ')');
  const std::string file = write_file("a.smt2", deep + ")");
  run_line("(ulimit -s 256; '" + command + "' print " + file + ") > '" + path("out") + "' 2> '" +
           path("err") + "'");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(errors, "");
  EXPECT_EQ(output.size(), 6000000u + 34);
}

}  // namespace
