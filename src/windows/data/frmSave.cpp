#include "windows/data/frmSave.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/NumberText.h"
#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "windows/Handlers.h"
#include "windows/data/SavedConfig.h"

namespace zth::windows {
namespace {

constexpr char kFilter[] = "Text Files (*.sav)|*.sav";

/// The user's short formats, with all digits of the year and with seconds: files of one afternoon are told apart by
/// them.
QString DateText(const QDate& date) {
  QString format = QLocale().dateFormat(QLocale::ShortFormat);
  if (!format.contains("yyyy")) format.replace("yy", "yyyy");
  return QLocale().toString(date, format);
}

QString TimeText(const QTime& time) {
  QString format = QLocale().timeFormat(QLocale::ShortFormat);
  if (!format.contains('s')) format.replace("mm", "mm:ss");
  return QLocale().toString(time, format);
}

QString RegisterName(int address) {
  const int row = chip::RowOfAddress(address);
  const QString number = QString::fromStdString("0x" + base::HexText(address));
  if (row < 0) return number;
  return number + "  " + QString::fromStdString(chip::RegisterTable.at(static_cast<std::size_t>(row)).Caption);
}

}  // namespace

frmSave::frmSave(const Context& context) : ChildWindow("frmSave", "Save/Recall Settings", context) {
  QGroupBox* frame = MakeFrame();
  auto* cmdClose = new QPushButton("C&lose", this);
  cmdClose->setObjectName("cmdClose");
  OnClick(*cmdClose, [this] { cmdClose_Click(); });
  SetCancelButton(*cmdClose);

  auto* column = new QVBoxLayout(this);
  column->addWidget(frame);
  column->addStretch();
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cmdClose);
  column->addLayout(row);
}

QGroupBox* frmSave::MakeFrame() {
  auto* frame = new QGroupBox("File I/O", this);
  frame->setObjectName("Frame2");
  auto* save = new QPushButton("&Save  Current Configuration", frame);
  save->setObjectName("cmdsave");
  OnClick(*save, [this] { cmdsave_Click(); });
  auto* recall = new QPushButton("&Recall Previous Configuration", frame);
  recall->setObjectName("cmdRecall");
  OnClick(*recall, [this] { cmdRecall_Click(); });
  chkNotDefaults_ = new QCheckBox("O&nly save registers that differ from their defaults ", frame);
  chkNotDefaults_->setObjectName("chkNotDefaults");
  auto* label = new QLabel("Add Co&mment", frame);
  label->setObjectName("Label2");
  txtComment_ = new QLineEdit(frame);
  txtComment_->setObjectName("txtComment");
  txtComment_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
  label->setBuddy(txtComment_);

  prgWork_ = new QProgressBar(frame);
  prgWork_->setObjectName("prgWork");
  prgWork_->setRange(0, 100);
  prgWork_->setTextVisible(false);
  prgWork_->setAccessibleName("Progress");
  lblState_ = new QLabel(frame);
  lblState_->setObjectName("lblState");
  lblState_->setTextFormat(Qt::PlainText);
  lblState_->setMinimumHeight(fontMetrics().height());

  auto* column = new QVBoxLayout(frame);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(save, 1);
  buttons->addWidget(recall, 1);
  column->addLayout(buttons);
  column->addWidget(chkNotDefaults_);
  auto* comment = new QHBoxLayout;
  comment->addWidget(label);
  comment->addWidget(txtComment_, 1);
  column->addLayout(comment);
  column->addSpacing(fontMetrics().height() / 2);
  column->addWidget(prgWork_);
  column->addWidget(lblState_);
  return frame;
}

void frmSave::Form_Load() {
  EndProgress("");
  adjustSize();
}

void frmSave::ShowProgress(int percent, const QString& reg) {
  // Once for each step of the bar: painting must not make a long file longer.
  if (percent == prgWork_->value()) return;
  prgWork_->setValue(percent);
  lblState_->setText(reg);
  Services().events.PumpPaint();
}

void frmSave::EndProgress(const QString& outcome) {
  prgWork_->setValue(0);
  lblState_->setText(outcome);
}

QString frmSave::AskForFile(bool save) {
  using Kind = platform::FileQuestion::Kind;
  return Services().fileDialogs.Ask({save ? Kind::Save : Kind::Open, "CommonDialog1",
                                     save ? "Save Current Configuration" : "Recall Previous Configuration",
                                     Services().process.Folder(), kFilter, "", false},
                                    this);
}

std::string frmSave::ReadChip() {
  std::string text;
  for (std::size_t row = 0; row < chip::RegisterTable.size(); ++row) {
    const chip::RegisterEntry& entry = chip::RegisterTable[row];
    if (entry.ReadOnly) continue;
    ShowProgress(static_cast<int>((row + 1) * 100 / chip::RegisterTable.size()),
                 "Reading " + QString::fromStdString(entry.Caption));
    const std::int16_t value = link::ReadRegister(link::DeviceAddress, entry.Address);
    if (!chkNotDefaults_->isChecked() || value != entry.Default) {
      text += SavedLine(entry.Address, value, entry.Caption);
    }
  }
  return text;
}

void frmSave::cmdsave_Click() {
  Desktop& desktop = TheDesktop();
  const QDateTime now = Services().clock.WallTime();
  std::string text = SavedHead(DateText(now.date()).toStdString(), TimeText(now.time()).toStdString(),
                               txtComment_->text().toStdString());
  desktop.EnableTimer(false);
  text += ReadChip();
  text += kSavedEnd;

  EndProgress("");
  const QString file = AskForFile(true);
  if (!file.isEmpty()) {
    if (Services().files.Replace(file, QByteArray::fromStdString(text))) {
      Unload();
    } else {
      EndProgress("Not saved: " + QFileInfo(file).fileName() + " could not be written");
    }
  }
  desktop.EnableTimer(true);
}

void frmSave::cmdRecall_Click() {
  const QString file = AskForFile(false);
  if (file.isEmpty()) return;
  EndProgress("");
  const auto bytes = Services().files.Read(file, SavedReader::kMostBytes);
  if (!bytes) {
    EndProgress("Nothing written: " + QFileInfo(file).fileName() + " could not be opened");
    return;
  }
  SavedReader reader({bytes->constData(), static_cast<std::size_t>(bytes->size())});
  auto result = reader.FindStart() ? SavedReader::Result::Line : SavedReader::Result::Broken;
  TheDesktop().EnableTimer(false);
  int written = 0;
  while (result == SavedReader::Result::Line) {
    int address = 0;
    int value = 0;
    result = reader.Next(address, value);
    if (result != SavedReader::Result::Line) break;
    ShowProgress(reader.Percent(), "Writing " + RegisterName(address));
    link::WriteRegisterValue(link::DeviceAddress, address, value);
    ++written;
  }
  TheDesktop().EnableTimer(true);
  const QString count = QString(written == 1 ? "%1 register written" : "%1 registers written").arg(written);
  EndProgress(result == SavedReader::Result::End ? count : count + "; the file breaks off before its \"}\"");
}

void frmSave::cmdClose_Click() {
  Unload();
}

}  // namespace zth::windows
