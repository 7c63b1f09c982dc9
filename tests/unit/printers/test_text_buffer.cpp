#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "quill/printers/text_buffer.h"

namespace quill {
namespace {

template <class... Pieces>
std::string text_of(const Pieces&... pieces) {
  std::ostringstream out;
  TextBuffer buffer(out);
  buffer.write(pieces...);
  buffer.flush();
  return out.str();
}

TEST(TextBuffer, WritesPieces) {
  EXPECT_EQ(text_of('(', std::string_view("bvadd"), ' ', uint64_t{17}, ')'), "(bvadd 17)");
  EXPECT_EQ(text_of(std::string_view("")), "");
}

TEST(TextBuffer, NothingIsHandedOverBeforeTheFlush) {
  std::ostringstream out;
  TextBuffer buffer(out);
  buffer << 'a' << std::string_view("bc");
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(&buffer.flush(), &out);
  EXPECT_EQ(out.str(), "abc");
  buffer.flush();
  EXPECT_EQ(out.str(), "abc");
}

TEST(TextBuffer, Numbers) {
  EXPECT_EQ(text_of(uint64_t{0}), "0");
  EXPECT_EQ(text_of(uint64_t{7}), "7");
  EXPECT_EQ(text_of(uint64_t{10}), "10");
  EXPECT_EQ(text_of(uint64_t{9999}), "9999");
  EXPECT_EQ(text_of(uint64_t{10000}), "10000");
  EXPECT_EQ(text_of(uint64_t{12345678}), "12345678");
  EXPECT_EQ(text_of(uint64_t{99999999}), "99999999");
  EXPECT_EQ(text_of(uint64_t{100000000}), "100000000");
  EXPECT_EQ(text_of(UINT64_MAX), "18446744073709551615");
}

TEST(TextBuffer, NumbersLikeThoseOfTheStandardLibrary) {
  std::ostringstream out;
  TextBuffer buffer(out);
  std::string expected;
  const auto check = [&](uint64_t number) {
    buffer << number << ' ';
    expected += std::to_string(number) + ' ';
  };
  for (uint64_t n = 0; n < 20000; ++n) check(n);
  for (uint64_t n = 20000; n < 200000000; n += 9973) check(n);
  for (uint64_t power = 1; power < 1000000000; power *= 10) {
    check(power - 1);
    check(power);
    check(power + 1);
  }
  buffer.flush();
  EXPECT_TRUE(out.str() == expected);
}

TEST(TextBuffer, TextsOfEveryLengthAcrossFlushes) {
  std::ostringstream out;
  TextBuffer buffer(out);
  std::string expected;
  std::string text;
  for (int length = 0; length < 300; ++length) {
    buffer.write(std::string_view(text), uint64_t(length), ' ', std::string_view(text));
    expected += text + std::to_string(length) + ' ' + text;
    text += static_cast<char>('a' + length % 26);
  }
  buffer.flush();
  EXPECT_EQ(out.str(), expected);
}

TEST(TextBuffer, TextsLongerThanItself) {
  const std::string huge(100000, 'x');
  const std::string just_too_long(4097, 'y');
  const std::string just_fits(4096, 'z');
  EXPECT_EQ(text_of('a', std::string_view(huge), 'b', std::string_view(just_too_long),
                    std::string_view(just_fits), uint64_t{1}),
            "a" + huge + "b" + just_too_long + just_fits + "1");
  EXPECT_EQ(text_of(huge), huge);
  EXPECT_EQ(text_of(just_fits, huge.c_str(), "end"), just_fits + huge + "end");
}

}  // namespace
}  // namespace quill
