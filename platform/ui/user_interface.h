#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

/// How the core asks its user. The windows, the command line and the tests each answer in their
/// own way.
namespace QvPlatform {

/// Owner of dialogs, as the core sees it: a token that it passes on. Forms derive from it.
class TComponent {
 public:
  virtual ~TComponent() = default;
};

/// How grave a message is, which a window shows by a sign.
enum class MessageKind { kPlain, kWarning, kError, kConfirmation };
/// How a message can be answered.
enum class MessageButtons { kOk, kYesNo };
/// How a message was answered: kOk by the one button, else kYes or kNo.
enum class MessageAnswer { kOk, kYes, kNo };

/// One row of the used-by list: a record that refers to the object about to be deleted.
struct UsedByRow {
  /// Name of the record's type, in the language of the user.
  std::string typeName;
  /// Name of the record.
  std::string name;
  /// Description of the record; may be empty.
  std::string description;
  /// Number of the record's object type, by which viewers find it.
  int objectType = 0;
  /// Key of the record in its table.
  int key = 0;
};

/// How the used-by list was left: the numbers are its modal results.
enum class UsedByAnswer { kViewed = 1, kClosed = 2 };

/// A field that somebody else has changed while the user was editing it, with its texts as a form
/// shows them.
struct ConflictRow {
  /// What stands in front of the field, in the language of the user.
  std::string caption;
  /// What the field held when the user began.
  std::string before;
  /// What somebody else has stored since.
  std::string theirs;
  /// What the user has put there.
  std::string mine;
};
/// What is to become of a record that two users have changed.
enum class ConflictAnswer {
  kTakeTheirs,  ///< the fields that the other has changed get his values, in the form alone
  kKeepMine,    ///< the form is stored over what the other has stored
  kGoBack       ///< nothing happens
};

/// Reports the course of a long operation; destroying it ends the display.
class TProgress {
 public:
  virtual ~TProgress() = default;
  /// One step of the announced count is done. False once the user has cancelled.
  virtual bool Next() = 0;
  /// Announces the number of steps anew, for work that learns it late; 0: unknown.
  virtual void SetMax(int /*count*/) {}
};

/// The user, as the core sees him. Calls wait for the answer, and come from one thread.
class TUserInterface {
 public:
  virtual ~TUserInterface() = default;

  /// Shows a text until the user has answered.
  virtual MessageAnswer ShowMessage(MessageKind kind, const std::string& text,
                                    MessageButtons buttons) = 0;

  /// Shows who refers to an object. kViewed: the user opened one of the rows and may have changed
  /// it, so that the scan has to run again. `viewAllowed` is false in simple mode.
  virtual UsedByAnswer ShowUsedBy(TComponent* owner, std::span<const UsedByRow> rows,
                                  bool viewAllowed) = 0;

  /// Asks what is to become of an object that somebody else has changed meanwhile; `rows` are the
  /// fields in which he differs. Who does not ask his user goes back.
  virtual ConflictAnswer AskConflict(const std::string& /*name*/,
                                     std::span<const ConflictRow> /*rows*/) {
    return ConflictAnswer::kGoBack;
  }

  /// Shows the course of an operation until the result is destroyed. `options` are those of the
  /// operation (0: plain), `count` is the number of steps (0: unknown).
  [[nodiscard]] virtual std::unique_ptr<TProgress> StartProgress(int options,
                                                                 const std::string& title,
                                                                 int count) = 0;
};

}  // namespace QvPlatform
