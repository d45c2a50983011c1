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

enum class MessageKind { kPlain, kWarning, kError, kConfirmation };
enum class MessageButtons { kOk, kYesNo };
enum class MessageAnswer { kOk, kYes, kNo };

/// One row of the used-by list: a record that refers to the object about to be deleted.
struct UsedByRow {
  std::string typeName;
  std::string name;
  std::string description;
  int objectType = 0;
  int key = 0;
};

/// How the used-by list was left: the numbers are its modal results.
enum class UsedByAnswer { kViewed = 1, kClosed = 2 };

/// Reports the course of a long operation; destroying it ends the display.
class TProgress {
 public:
  virtual ~TProgress() = default;
  /// One step of the announced count is done. False once the user has cancelled.
  virtual bool Next() = 0;
  /// Announces the number of steps anew, for work that learns it late; 0: unknown.
  virtual void SetMax(int /*count*/) {}
};

class TUserInterface {
 public:
  virtual ~TUserInterface() = default;

  virtual MessageAnswer ShowMessage(MessageKind kind, const std::string& text,
                                    MessageButtons buttons) = 0;

  /// Shows who refers to an object. kViewed: the user opened one of the rows and may have changed
  /// it, so that the scan has to run again. `viewAllowed` is false in simple mode.
  virtual UsedByAnswer ShowUsedBy(TComponent* owner, std::span<const UsedByRow> rows,
                                  bool viewAllowed) = 0;

  /// `options` as given by the operation (0: plain), `count` the number of steps.
  [[nodiscard]] virtual std::unique_ptr<TProgress> StartProgress(int options,
                                                                 const std::string& title,
                                                                 int count) = 0;
};

}  // namespace QvPlatform
