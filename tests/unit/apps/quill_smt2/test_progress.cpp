#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <istream>
#include <sstream>
#include <string>

#include "apps/quill_smt2/progress.h"

namespace quill::smt2::app {
namespace {

constexpr uint64_t mebibyte = ProgressBuffer::mebibyte;

// What is shown while so many bytes are read in pieces, and whether they arrive.
std::string shown_for(uint64_t bytes, uint64_t total, std::streamsize piece) {
  std::istringstream source(std::string(bytes, 'x'));
  std::ostringstream terminal;
  {
    ProgressBuffer progress(*source.rdbuf(), total, terminal);
    std::istream input(&progress);
    std::string block(static_cast<size_t>(piece), '\0');
    uint64_t arrived = 0;
    while (input.read(block.data(), piece) || input.gcount() != 0) {
      arrived += static_cast<uint64_t>(input.gcount());
    }
    EXPECT_EQ(arrived, bytes);
  }
  return terminal.str();
}

TEST(Progress, IsNotShownForSmallInputs) {
  EXPECT_EQ(shown_for(15 * mebibyte, 0, 65536), "");
  EXPECT_EQ(shown_for(16 * mebibyte, 16 * mebibyte, 65536), "");
}

TEST(Progress, IsShownFromSixteenMebibytesOnAndErased) {
  EXPECT_EQ(shown_for(18 * mebibyte, 18 * mebibyte, 65536),
            "\rread 16 of 18 MiB\rread 17 of 18 MiB\rread 18 of 18 MiB\r                 \r");
}

TEST(Progress, DoesWithoutATotal) {
  EXPECT_EQ(shown_for(17 * mebibyte + 5, 0, 65536), "\rread 16 MiB\rread 17 MiB\r           \r");
}

TEST(Progress, CountsPiecesOfAnyLength) {
  EXPECT_EQ(shown_for(17 * mebibyte, 0, 1000003), "\rread 16 MiB\rread 17 MiB\r           \r");
}

TEST(Progress, CountsSingleBytes) {
  std::istringstream source(std::string(16 * mebibyte, 'x'));
  std::ostringstream terminal;
  ProgressBuffer progress(*source.rdbuf(), 0, terminal);
  std::istream input(&progress);
  std::string block(16 * mebibyte - 1, '\0');
  input.read(block.data(), static_cast<std::streamsize>(block.size()));
  EXPECT_EQ(input.peek(), 'x');
  EXPECT_EQ(terminal.str(), "");
  EXPECT_EQ(input.get(), 'x');
  EXPECT_EQ(terminal.str(), "\rread 16 MiB");
  EXPECT_EQ(input.get(), std::istream::traits_type::eof());
}

// The command with a terminal for standard error.
class ProgressOfTheCommand : public testing::Test {
 protected:
  ProgressOfTheCommand() {
    std::string name = testing::TempDir() + "quill-smt2-XXXXXX";
    if (mkdtemp(name.data()) != nullptr) folder = name;
    master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) return;
    terminal = ptsname(master);
    // Keeps what the command writes readable after its end.
    slave = open(terminal.c_str(), O_RDWR | O_NOCTTY);
  }
  ~ProgressOfTheCommand() override {
    if (slave >= 0) close(slave);
    if (master >= 0) close(master);
    std::filesystem::remove_all(folder);
  }

  // A script that is nothing but a comment.
  std::string write_script(uint64_t bytes) const {
    std::ofstream(folder + "/a.smt2") << std::string(bytes - 1, ';') << '\n';
    return folder + "/a.smt2";
  }

  // What the terminal gets.
  std::string shown_by(const std::string& arguments) const {
    const std::string line = std::string("'") + QUILL_SMT2_COMMAND + "' " + arguments + " > '" +
                             folder + "/out' 2> " + terminal;
    EXPECT_EQ(std::system(line.c_str()), 0);
    std::string text;
    char block[4096];
    for (ssize_t got; (got = ::read(master, block, sizeof block)) > 0;) {
      text.append(block, static_cast<size_t>(got));
    }
    return text;
  }

  std::string folder;
  std::string terminal;
  int master = -1;
  int slave = -1;
};

TEST_F(ProgressOfTheCommand, AppearsOnATerminal) {
  if (slave < 0) GTEST_SKIP() << "there are no pseudo-terminals";
  const std::string file = write_script(17 * mebibyte);
  EXPECT_EQ(shown_by("stats " + file),
            "\rread 16 of 17 MiB\rread 17 of 17 MiB\r                 \r");
  EXPECT_EQ(shown_by("stats - < " + file), "\rread 16 MiB\rread 17 MiB\r           \r");
}

TEST_F(ProgressOfTheCommand, DoesNotAppearForSmallFiles) {
  if (slave < 0) GTEST_SKIP() << "there are no pseudo-terminals";
  EXPECT_EQ(shown_by("stats " + write_script(16 * mebibyte)), "");
}

TEST_F(ProgressOfTheCommand, DoesNotAppearInAFile) {
  const std::string errors = folder + "/err";
  const std::string line = std::string("'") + QUILL_SMT2_COMMAND + "' stats " +
                           write_script(17 * mebibyte) + " > '" + folder + "/out' 2> " + errors;
  EXPECT_EQ(std::system(line.c_str()), 0);
  EXPECT_EQ(std::filesystem::file_size(errors), 0u);
}

}  // namespace
}  // namespace quill::smt2::app
