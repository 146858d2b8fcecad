// Replacing a file whole: the new text is written beside it under a short unique name and then
// renamed over it, so that the file is at every moment either the old one or the new one.
#pragma once

#include <string>

class FileReplacement {
  public:
    FileReplacement() = default;
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    // A new version that was never put in place leaves nothing behind.
    ~FileReplacement();

    // Writes the new version of `name`. A symbolic link is followed to the file it names, which
    // is what gets replaced, so that the link stays a link. False, with errno telling why, when
    // the file may not be written or the new version could not be written whole.
    bool prepare(const std::string& name, const std::string& text);
    // Puts the new version in the file's place; false, with errno set, when the rename failed.
    bool commit();
    // Removes the committed file again, where there was none before; true when it did.
    bool undoNewFile();

  private:
    std::string path;      // the file itself, links followed
    std::string temporary; // the new version until it is committed
    bool existed = false;
};
