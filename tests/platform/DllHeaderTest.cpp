#include <map>

#include <QtEndian>
#include <gtest/gtest.h>

#include "platform/DllHeader.h"

namespace zth::platform {
namespace {

constexpr quint16 kX86 = 0x14C;
constexpr quint16 kX64 = 0x8664;
constexpr int kSection = 0x200;        // where the only section begins in the file
constexpr quint32 kAddress = 0x10000;  // and in memory

template <typename T>
void Put(QByteArray& bytes, qsizetype at, T value) {
  if (bytes.size() < at + qsizetype{sizeof(T)}) bytes.resize(at + qsizetype{sizeof(T)}, '\0');
  qToLittleEndian<T>(value, bytes.data() + at);
}

/// The least of a library that the headers' format allows.
QByteArray Dll(quint16 machine, const QList<QByteArray>& needs) {
  const bool plus = machine == kX64;
  QByteArray bytes("MZ");
  Put<quint32>(bytes, 0x3C, 0x80);
  Put<quint32>(bytes, 0x80, 0x4550);
  Put<quint16>(bytes, 0x84, machine);
  Put<quint16>(bytes, 0x86, 1);  // sections
  const quint16 optional = plus ? 240 : 224;
  Put<quint16>(bytes, 0x94, optional);
  Put<quint16>(bytes, 0x98, plus ? 0x20B : 0x10B);
  Put<quint32>(bytes, 0x98 + (plus ? 112 : 96) + 8, kAddress + 0x10);
  const qsizetype section = 0x98 + optional;
  Put<quint32>(bytes, section + 12, kAddress);
  Put<quint32>(bytes, section + 16, 0x1000);
  Put<quint32>(bytes, section + 20, kSection);
  Put<quint32>(bytes, kSection + 0xFFC, 0);
  int text = 0x800;
  for (qsizetype i = 0; i < needs.size(); ++i) {
    Put<quint32>(bytes, kSection + 0x10 + i * 20 + 12, kAddress + static_cast<quint32>(text));
    bytes.replace(kSection + text, needs[i].size(), needs[i]);
    text += static_cast<int>(needs[i].size()) + 1;
  }
  return bytes;
}

TEST(DllHeader, TellsTheMachineAndWhatALibraryNeeds) {
  for (const auto& [number, machine] :
       {std::pair{kX86, DllMachine::X86}, {kX64, DllMachine::X64}, {quint16{0x1C4}, DllMachine::Other}}) {
    const auto header = ReadDllHeader(Dll(number, {"KERNEL32.dll", "maker.dll"}));
    ASSERT_TRUE(header) << number;
    EXPECT_EQ(header->machine, machine);
    EXPECT_EQ(header->needs, QStringList({"KERNEL32.dll", "maker.dll"})) << number;
  }
  EXPECT_TRUE(ReadDllHeader(Dll(kX64, {}))->needs.isEmpty());
  for (const char* other : {"", "MZ", "\177ELF", "not a library"}) EXPECT_FALSE(ReadDllHeader(other)) << other;
}

TEST(DllHeader, OfADamagedFileIsReadWithinTheFile) {
  const QByteArray whole = Dll(kX64, {"KERNEL32.dll"});
  for (qsizetype size = 0; size < whole.size(); ++size) {
    const auto header = ReadDllHeader(QByteArray(whole.constData(), size));  // a buffer of its own, for the sanitizer
    EXPECT_EQ(header.has_value(), size >= 0x84) << size;
  }
  for (qsizetype at = 0; at < 0x240; ++at) {
    for (const char bits : {'\1', '\177', '\377'}) {
      QByteArray changed = whole;
      changed[at] = static_cast<char>(changed[at] ^ bits);
      const auto header = ReadDllHeader(changed);
      EXPECT_LE(header ? header->needs.size() : 0, 1000) << at;
    }
  }
  QByteArray endless = whole;
  for (int row = 0; row < 200; ++row) Put<quint32>(endless, kSection + 0x10 + row * 20 + 12, kAddress + 0x800);
  EXPECT_LE(ReadDllHeader(endless)->needs.size(), 1000);
}

TEST(DllTrouble, NamesTheLibraryAndTheReason) {
  const std::map<QString, QByteArray> files{
      {"C:/good.dll", Dll(kX64, {"KERNEL32.dll", "api-ms-win-core.dll"})},
      {"C:/old.dll", Dll(kX86, {"gone.dll"})},
      {"C:/text.dll", "no library"},
      {"C:/alone.dll", Dll(kX64, {"gone.dll", "KERNEL32.dll", "Gone.DLL"})},
      {"C:/user.dll", Dll(kX64, {"OLD.dll", "middle.dll"})},
      {"C:/middle.dll", Dll(kX64, {"user.dll", "deep.dll"})},
      {"S:/kernel32.dll", Dll(kX64, {"ntdll.dll"})},
  };
  const DllSearch search{
      [&](const QString& name) {
        for (const auto& [path, content] : files) {
          if (path.mid(3) == name.toLower()) return path;
        }
        return QString();
      },
      [&](const QString& path) { return ReadDllHeader(files.at(path)); },
      [](const QString& path) { return path.startsWith("S:"); },
  };
  const QString absent = " needs %1, which is in none of the folders searched.";
  const QString wrong =
      "C:/old.dll is a 32-bit library, and this program is a 64-bit one, which can load its own kind only.";
  const std::pair<QString, QString> rows[]{
      {"C:/good.dll", ""},
      {"C:/old.dll", wrong},
      {"C:/text.dll", "C:/text.dll is not a library for Windows."},
      {"C:/alone.dll", "C:/alone.dll" + absent.arg("gone.dll")},
      {"C:/user.dll", wrong + " C:/user.dll needs it. C:/middle.dll" + absent.arg("deep.dll")},
  };
  for (const auto& [file, trouble] : rows) EXPECT_EQ(DllTrouble(file, DllMachine::X64, search), trouble);
  EXPECT_EQ(DllTrouble("C:/good.dll", DllMachine::X86, search),
            "C:/good.dll is a 64-bit library, and this program is a 32-bit one, which can load its own kind only.");
}

}  // namespace
}  // namespace zth::platform
