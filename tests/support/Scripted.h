#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Services.h"

/// Boxes and file dialogs that answer from a script.
namespace zth::testing {

/// A user's answers, in order. Strict: a question without an answer fails the test at once, an unused answer fails it
/// at the end.
template <typename Answer>
class Script : public std::deque<Answer> {
 public:
  using std::deque<Answer>::operator=;
  Script() = default;
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;
  ~Script() {
    // After an exception, unused answers are not an error.
    EXPECT_TRUE(this->empty() || std::uncaught_exceptions() > 0) << this->size() << " answers nobody asked for";
  }

  Answer Take(const QString& question, Answer answer) {
    if (this->empty()) {
      ADD_FAILURE() << "nobody expected: " << question.toStdString();
    } else {
      answer = std::move(this->front());
      this->pop_front();
    }
    return answer;
  }
};

class ScriptedPrompts final : public platform::Prompts {
 public:
  platform::BoxAnswer Ask(const platform::BoxQuestion& question) override {
    shown.push_back(question);
    if (whileShown) whileShown();
    return script.Take(question.text, platform::BoxAnswer::No);
  }

  int Choose(const platform::ChoiceQuestion& question) override {
    choicesShown.push_back(question);
    if (whileShown) whileShown();
    const QString pick = picks.Take(question.text, question.choices.value(question.escape));
    const auto index = static_cast<int>(question.choices.indexOf(pick));
    EXPECT_GE(index, 0) << "no choice " << pick.toStdString() << " among " << question.choices.join(", ").toStdString();
    return index < 0 ? question.escape : index;
  }

  Script<platform::BoxAnswer> script;
  std::vector<platform::BoxQuestion> shown;
  Script<QString> picks;  ///< captions of choices
  std::vector<platform::ChoiceQuestion> choicesShown;
  /// Runs while a box is open: the events that a modal box lets through.
  std::function<void()> whileShown;
};

class ScriptedFileDialogs final : public platform::FileDialogs {
 public:
  QString Ask(const platform::FileQuestion& question, QWidget* /*parent*/) override {
    shown.push_back(question);
    return script.Take(question.caption, {});
  }

  Script<QString> script;  ///< paths; empty means Cancel
  std::vector<platform::FileQuestion> shown;
};

}  // namespace zth::testing
