#pragma once

#include <QString>
#include <QStringList>

/// The seam to what the operating system tells of this machine's devices. Nothing here touches a device.
namespace zth::platform {

/// Whether this process may use a device node.
struct NodeAccess {
  bool isThere = false;
  bool mayUse = false;  ///< read and write
  QString group;        ///< the group that the node belongs to; its number if it has no name
};

/// Paths are absolute.
class Machine {
 public:
  virtual ~Machine() = default;
  /// The names of everything in a folder, sorted; none if there is no such folder.
  virtual QStringList Names(const QString& folder) const = 0;
  /// The first line of a file of the kernel's; empty if there is none.
  virtual QString FirstLine(const QString& file) const = 0;
  /// The last part of the path that a link leads to; empty if there is no such link.
  virtual QString Target(const QString& link) const = 0;
  virtual NodeAccess Access(const QString& node) const = 0;
};

/// This machine, or a tree of files that stands for one.
class LocalMachine final : public Machine {
 public:
  /// Every path is taken below `root`.
  explicit LocalMachine(QString root = {}) : root_(std::move(root)) {}
  QStringList Names(const QString& folder) const override;
  QString FirstLine(const QString& file) const override;
  QString Target(const QString& link) const override;
  NodeAccess Access(const QString& node) const override;

 private:
  QString root_;
};

}  // namespace zth::platform
