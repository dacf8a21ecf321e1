// TempHome: a fresh home folder for one test. It points HOME at a new
// temporary folder (so the plug-in's support folder, library and settings
// land there), restores HOME afterwards and removes the folder with
// everything in it.
#pragma once

#include <string>

class TempHome {
  public:
    TempHome();
    ~TempHome();
    TempHome(const TempHome&) = delete;
    TempHome& operator=(const TempHome&) = delete;

    const std::string& path() const { return root; }
    // The support folder ("<home>/Library/Application Support/Stagebeacon/").
    std::string support() const;

  private:
    std::string root;
    std::string savedHome;
    bool hadHome = false;
};

// Whole-file helpers for fixtures.
void writeText(const std::string& path, const std::string& text);
std::string readText(const std::string& path);
bool exists(const std::string& path);
