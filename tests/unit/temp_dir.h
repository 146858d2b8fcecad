// A test that reads or writes data files runs in a fresh temporary working directory, since the
// readers and writers use fixed file names there.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class TempDirTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "hexfold-test-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        dir = pattern;
        previous = std::filesystem::current_path();
        std::filesystem::current_path(dir);
    }
    void TearDown() override {
        std::filesystem::current_path(previous);
        std::filesystem::remove_all(dir);
    }

    static void write(const std::string& name, const std::string& content) {
        std::ofstream(name, std::ios::binary) << content;
    }
    static std::string read(const std::string& name) {
        std::ifstream in(name, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    std::filesystem::path dir;
    std::filesystem::path previous;
};
