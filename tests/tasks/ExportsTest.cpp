#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tasks/Exports.h"
#include "tasks/SavedImage.h"
#include "tasks/WriteImage.h"
#include "tests/tasks/RandomImage.h"

namespace zth::testing {
namespace {

using tasks::ExportForm;
using tasks::ExportSubject;
using tasks::ExportText;
using tasks::ImageOrError;
using tasks::RegisterImage;
using ::testing::HasSubstr;

const tasks::TextNotes kNotes{"3/1/2026", "8:00",
                              "no harm: */ ?"
                              "?/ \\ $(reboot) `x` \xE2\x80\xAE\nreboot \xC3\xA4",
                              0x2C};

/// What can be written of a byte and goes to C and to a script.
unsigned WrittenBits(std::uint8_t reg) {
  return reg == 0x00 || reg == 0x01 ? 0x7FU : 0xFFU;
}

/// Runs a program, with the folder as its own; its output with what it said of errors.
std::string RunProgram(const QString& folder, const QString& program, const QStringList& arguments, int expected = 0) {
  QProcess process;
  process.setWorkingDirectory(folder);
  process.setProcessChannelMode(QProcess::MergedChannels);
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("PATH", folder + ':' + environment.value("PATH"));
  process.setProcessEnvironment(environment);
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(60'000)) << program.toStdString();
  const std::string output = process.readAll().toStdString();
  EXPECT_EQ(process.exitCode(), expected) << output;
  return output;
}

void Write(const QString& path, const std::string& text) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(text.data(), static_cast<qint64>(text.size()));
}

/// The map that rows of "address value mask", as hexadecimal numbers, leave of `before`.
std::map<unsigned, unsigned> Applied(const std::string& rows, std::map<unsigned, unsigned> before = {}) {
  for (const QString& row : QString::fromStdString(rows).split('\n', Qt::SkipEmptyParts)) {
    const QStringList numbers = row.split(' ');
    const auto number = [&numbers](int at) { return numbers.value(at).toUInt(nullptr, 16); };
    unsigned& byte = before[number(0)];
    byte = (byte & ~number(2)) | (number(1) & number(2));
  }
  return before;
}

TEST(Exports, ARandomImageComesBackFromEachForm) {
  std::mt19937 random(18);
  for (int round = 0; round < 40; ++round) {
    const RegisterImage image = RandomImage(random, tasks::ReadableRegisters(), 1 + round % 10);
    for (const ExportForm form : {ExportForm::Saved, ExportForm::C, ExportForm::Script, ExportForm::Csv}) {
      const std::string text = ExportText(form, {image}, kNotes);
      EXPECT_EQ(text, ExportText(form, {image}, kNotes));
      const ImageOrError read = tasks::ImageOfText(text, "again");
      ASSERT_TRUE(read) << read.error << '\n' << text;
      EXPECT_EQ(read.image->origin, "again");
      RegisterImage expected;
      expected.origin = "again";
      for (unsigned reg = 0; reg <= 0xFF; ++reg) {
        const auto address = static_cast<std::uint8_t>(reg);
        const bool isWritable = std::ranges::count(tasks::ComparableRegisters(), address) != 0;
        if (!image.Holds(address) || (form != ExportForm::Csv && !isWritable)) continue;
        const bool isWrites = form == ExportForm::C || form == ExportForm::Script;
        const unsigned bits = isWrites ? WrittenBits(address) : 0xFFU;
        expected.Put(address, image.bytes[address].value, static_cast<std::uint8_t>(bits));
      }
      EXPECT_EQ(*read.image, expected) << text;
    }
  }
}

TEST(Exports, DifferencesComeBackAsFields) {
  std::mt19937 random(19);
  const RegisterImage before = RandomImage(random, tasks::ComparableRegisters(), 10);
  RegisterImage image = before;
  for (const std::uint8_t reg : tasks::ComparableRegisters()) {
    if (random() % 4U == 0) image.Put(reg, static_cast<std::uint8_t>(image.bytes[reg].value ^ (1U << random() % 7U)));
  }
  for (const ExportForm form : {ExportForm::C, ExportForm::Script, ExportForm::Csv}) {
    const ImageOrError read = tasks::ImageOfText(ExportText(form, {image, before}, kNotes), "again");
    ASSERT_TRUE(read) << read.error;
    for (const std::uint8_t reg : tasks::ComparableRegisters()) {
      const unsigned differing = image.bytes[reg].value ^ before.bytes[reg].value;
      const unsigned known = read.image->bytes[reg].known;
      EXPECT_EQ(known != 0, differing != 0) << int{reg};
      EXPECT_EQ(differing & ~known, 0U) << int{reg};
      EXPECT_EQ(read.image->bytes[reg].value, image.bytes[reg].value & known) << int{reg};
    }
  }
  const std::string saved = ExportText(ExportForm::Saved, {image, before}, kNotes);
  const ImageOrError whole = tasks::ImageOfSaved(saved, "");
  for (const std::uint8_t reg : tasks::ComparableRegisters()) {
    EXPECT_EQ(whole.image->bytes[reg], image.bytes[reg] == before.bytes[reg] ? tasks::HeldByte{} : image.bytes[reg]);
  }
}

TEST(Exports, TheTextsReadAsTheyShould) {
  RegisterImage before;
  before.origin = "Defaults";
  before.Put(0x21, 0x11);
  before.Put(0x48, 0x95);
  RegisterImage image;
  image.origin = "58h on USB";
  image.Put(0x01, 0xE1);
  image.Put(0x21, 0x31);
  image.Put(0x48, 0x90);
  const tasks::TextNotes notes{"3/1/2026", "8:00", "bench 3"};
  const std::string head = "From: 58h on USB\n";
  EXPECT_EQ(ExportText(ExportForm::Report, {image, before}, notes),
            "ZTH4718 configuration report\n\nFrom: 58h on USB\nOnly the fields that differ from: Defaults\n"
            "Made: 3/1/2026 at 8:00\nComment: bench 3\n3 registers.\n\n"
            "Address  Register          Before  Value  Change\n"
            "01h      Configuration 1   -       E1h\n"
            "21h      PWM1 Config       11h     31h    Bhvr 0 -> 1\n"
            "48h      Local High Limit  95h     90h\n");
  EXPECT_EQ(ExportText(ExportForm::Csv, {image}, notes),
            "Address,Register,Value,Mask,Fields\r\n"
            "0x01,Configuration 1,0xE1,0xFF,\"RDY = 1, LCK = 1, TOD = 1, DFS = 0, ALT = 0, AVGT = 0, AVGV = 0, "
            "MON = 1\"\r\n"
            "0x21,PWM1 Config,0x31,0xFF,\"Bhvr = 1, Inv = 1, Slow = 0, Spin = 1\"\r\n"
            "0x48,Local High Limit,0x90,0xFF,\r\n");
  EXPECT_THAT(ExportText(ExportForm::Script, {image, before}, notes),
              HasSubstr("# PWM1 Config: Bhvr = 1\ni2cset -y -m 0xe0 \"$bus\" \"$address\" 0x21 0x20\n"
                        "# Local High Limit\ni2cset -y \"$bus\" \"$address\" 0x48 0x90\n"
                        "# Configuration 1: LCK = 1, TOD = 1, DFS = 0, ALT = 0, AVGT = 0, AVGV = 0, MON = 1\n"
                        "i2cset -y -m 0x7f \"$bus\" \"$address\" 0x01 0x61\n# The end"));
  EXPECT_THAT(ExportText(ExportForm::C, {image}, notes),
              HasSubstr("  {0x21, 0x31, 0xFF}, /* PWM1 Config: Bhvr = 1, Inv = 1, Slow = 0, Spin = 1 */\n"
                        "  {0x48, 0x90, 0xFF}, /* Local High Limit */\n  {0x01, 0x61, 0x7F}, /*"));
}

TEST(Exports, AForeignOrDamagedTextGivesAnErrorWithItsLine) {
  const RegisterImage image = tasks::DefaultImage();
  const std::string c = ExportText(ExportForm::C, {image}, kNotes);
  const std::string script = ExportText(ExportForm::Script, {image}, kNotes);
  const std::string csv = ExportText(ExportForm::Csv, {image}, kNotes);
  const std::string saved = ExportText(ExportForm::Saved, {image}, kNotes);
  const auto changed = [](std::string text, const std::string& from, const std::string& to) {
    EXPECT_NE(text.find(from), std::string::npos) << from;
    return text.replace(text.find(from), from.size(), to);
  };
  const auto line = [](const std::string& text, const std::string& of) {
    return "line " +
           std::to_string(std::count(text.begin(), text.begin() + static_cast<long>(text.find(of)), '\n') + 1);
  };
  const std::vector<std::pair<std::string, std::string>> rows{
      {changed(c, "{0x48, 0x95", "{0x48, 0xZZ"), line(c, "{0x48") + ": \"  {0x48, 0xZZ, 0xFF}, /*...\" is no row"},
      {changed(c, "/* Local High Limit", "Local High Limit"),
       line(c, "{0x48") + ": \"  {0x48, 0x95, 0xFF}, Lo...\" is no row"},
      {c.substr(0, c.find("{0x48")), line(c, "{0x48")},
      {changed(c, "/* ZTH4718", "/* ZTH4719"), "line "},
      {changed(script, "0x48 0x95", "0x48 0x195"), line(script, "0x48 0x95") + ": \"i2cset"},
      {changed(script, "# Tach Enable", "reboot"), line(script, "# Tach Enable") + ": \"reboot"},
      {script.substr(0, script.find("0x48 0x95")), line(script, "0x48 0x95") + ": \"i2cset -y \"$bus\" \"$addre...\""},
      {changed(script, "i2cset script 1", "i2cset script 9"), "line 2: this is no script"},
      {changed(csv, "0x48,", "48,"), line(csv, "0x48,") + ": \"48\" is no byte"},
      {changed(csv, "0x48,", "\"0x48,"), line(csv, "0x48,") + ": the line has no five fields"},
      {csv.substr(0, csv.find("0x48,") + 9), line(csv, "0x48,") + ": the text breaks off"},
      {saved.substr(0, saved.find("0x49")), line(saved, "0x48") + ": the text breaks off before its \"}\""},
      {"int main() {\n  return 0;\n}\n", "line 2: this is no line of a saved configuration"},
      {"", "no \"{\""},
      {"hello", "no \"{\""},
      {std::string("{\0\n\0000\0x\0", 8), "the text is in UTF-16"},
      {ExportText(ExportForm::Report, {image}, kNotes), "line 1: this is a report"},
  };
  for (const auto& [text, error] : rows) {
    const ImageOrError read = tasks::ImageOfText(text, "");
    EXPECT_FALSE(read) << error;
    EXPECT_THAT(read.error, ::testing::StartsWith(error));
  }
  // Any damage: never a crash, and an image only where nothing can tell.
  std::mt19937 random(3);
  for (const std::string& sound : {c, script, csv, saved}) {
    for (int round = 0; round < 300; ++round) {
      std::string text = sound.substr(0, round % 2 == 0 ? random() % sound.size() : sound.size());
      for (int i = 0; i < 3 && !text.empty(); ++i) text[random() % text.size()] = static_cast<char>(random());
      const ImageOrError read = tasks::ImageOfText(text, "");
      EXPECT_NE(read.image.has_value(), !read.error.empty());
    }
  }
}

TEST(Exports, ASavedConfigurationIsReadAsItIsRecalled) {
  const std::string edited = "Tarnwell Silicon\n{\n 0x48 = 0x11, by hand\n0x49\t0x22\n0x49\t0x23\n}\n";
  const ImageOrError read = tasks::ImageOfSaved(edited, "");
  ASSERT_TRUE(read) << read.error;
  EXPECT_EQ(read.image->bytes[0x48].value, 0x11);
  EXPECT_EQ(read.image->bytes[0x49].value, 0x23);
}

#ifdef ZTH_COMPILER
TEST(Exports, TheTableOfCCompilesWithoutAWarningAndHoldsTheWrites) {
  QTemporaryDir folder;
  std::mt19937 random(20);
  const RegisterImage image = RandomImage(random, tasks::ReadableRegisters(), 10);
  const RegisterImage other = RandomImage(random, tasks::ReadableRegisters(), 10);
  const std::string print =
      "#include <stdio.h>\n"
      "int main(void) {\n"
      "  const struct zth4718_write* row;\n"
      "  for (row = zth4718_writes; row->mask != 0; ++row)\n"
      "    printf(\"%x %x %x\\n\", row->address, row->value, row->mask);\n"
      "  return 0;\n"
      "}\n";
  const QStringList flags{"-Wall", "-Wextra", "-Wpedantic", "-Werror", "-Wshadow", "-Wconversion"};
  for (const ExportSubject& subject :
       {ExportSubject{image}, ExportSubject{image, other}, ExportSubject{image, image}}) {
    const std::string text = ExportText(ExportForm::C, subject, kNotes);
    Write(folder.filePath("table.c"), text);
    Write(folder.filePath("print.c"), text + print);
    RunProgram(folder.path(), ZTH_COMPILER, QStringList{"-x", "c++", "-std=c++17", "-c", "table.c"} + flags);
    RunProgram(folder.path(), ZTH_COMPILER, QStringList{"-x", "c", "-std=c99", "print.c", "-o", "print"} + flags);
    std::map<unsigned, unsigned> expected;
    for (const tasks::Wanted& each :
         subject.against ? tasks::DifferencesOf(image, *subject.against) : tasks::AllOf(image)) {
      const unsigned mask = each.mask & WrittenBits(each.reg);
      if (mask != 0) expected[each.reg] = image.bytes[each.reg].value & mask;
    }
    EXPECT_EQ(Applied(RunProgram(folder.path(), folder.filePath("print"), {})), expected);
  }
}
#endif

#ifdef Q_OS_UNIX
TEST(Exports, TheScriptCallsI2csetForEachRegister) {
  QTemporaryDir folder;
  std::mt19937 random(21);
  const RegisterImage image = RandomImage(random, tasks::ComparableRegisters(), 10);
  const RegisterImage other = RandomImage(random, tasks::ComparableRegisters(), 10);
  Write(folder.filePath("i2cset"),
        "#!/bin/sh\n"
        "[ \"$1\" = -y ] || exit 9\n"
        "shift\n"
        "mask=ff\n"
        "if [ \"$1\" = -m ]; then mask=${2#0x}; shift 2; fi\n"
        "[ \"$1 $2 $#\" = \"$WANTED 4\" ] || exit 8\n"
        "echo \"${3#0x} ${4#0x} $mask\"\n");
  QFile(folder.filePath("i2cset")).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
  const auto held = [](const RegisterImage& map) {
    std::map<unsigned, unsigned> bytes;
    for (const std::uint8_t reg : tasks::ComparableRegisters()) bytes[reg] = map.bytes[reg].value;
    return bytes;
  };
  const auto wanted = [&](std::map<unsigned, unsigned> before) {
    for (const auto& [reg, value] : held(image)) {
      const unsigned bits = WrittenBits(static_cast<std::uint8_t>(reg));
      before[reg] = (before[reg] & ~bits) | (value & bits);
    }
    return before;
  };
  for (const bool differences : {false, true}) {
    const ExportSubject subject = differences ? ExportSubject{image, other} : ExportSubject{image};
    Write(folder.filePath("script"), ExportText(ExportForm::Script, subject, kNotes));
    qputenv("WANTED", "1 0x2c");
    EXPECT_EQ(RunProgram(folder.path(), "sh", {"-n", "script"}), "");
    const std::string calls = RunProgram(folder.path(), "sh", {"script"});
    EXPECT_EQ(Applied(calls, held(other)), wanted(held(other)));
    EXPECT_EQ(std::count(calls.begin(), calls.end(), '\n'),
              static_cast<long>(
                  tasks::PlanWrite(image, differences ? tasks::DifferencesOf(image, other) : tasks::AllOf(image))
                      .steps.size()));
    qputenv("WANTED", "7 0x2e");
    EXPECT_EQ(RunProgram(folder.path(), "sh", {"script", "7", "0x2e"}), calls);
    RunProgram(folder.path(), "sh", {"script", "8", "0x2e"}, 8);  // the first call that fails ends it
  }
  QFile::remove(folder.filePath("i2cset"));
  EXPECT_EQ(RunProgram(folder.path(), "sh", {"-c", "sh=$(command -v sh); PATH=/nowhere; exec \"$sh\" script"}, 1),
            "i2cset is missing: install i2c-tools.\n");
}
#endif

TEST(Exports, AFileNameTellsItsForm) {
  for (const ExportForm form : tasks::kExportForms) {
    EXPECT_EQ(tasks::FormOfFileName("a.b." + std::string(tasks::WordsOf(form).extension)), form);
  }
  EXPECT_EQ(tasks::FormOfFileName("A.CSV"), ExportForm::Csv);
  EXPECT_EQ(tasks::FormOfFileName("csv"), std::nullopt);
  EXPECT_EQ(tasks::FormOfFileName("a.h"), std::nullopt);
}

}  // namespace
}  // namespace zth::testing
