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

TEST_F(Command, NeedsASubcommand) {
  run("");
  EXPECT_EQ(status, 1);
  EXPECT_EQ(output, "");
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
