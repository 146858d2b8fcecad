// Tests that read or write data files run in a fresh temporary working directory, since the
// readers and writers use fixed file names there.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

class TempDirTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "hexfold-test-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        previous = std::filesystem::current_path();
        std::filesystem::current_path(dir = pattern);
    }
    void TearDown() override { std::filesystem::current_path(previous), std::filesystem::remove_all(dir); }
    static void write(const std::string& name, const std::string& text) {
        std::ofstream(name, std::ios::binary) << text;
    }
    static std::string read(const std::string& name) {
        return (std::ostringstream() << std::ifstream(name, std::ios::binary).rdbuf()).str();
    }
    std::filesystem::path dir, previous;
};
