// Fixtures for tests of the rules model: the global catalogues start and end empty, so that the
// tests also pass when they all run in one process.
#pragma once

#include "rules/character.h"
#include "rules/faction.h"
#include "rules/item.h"
#include "rules/skill.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

inline void clearModel() {
    clearFactions();
    clearCharacters();
    clearItems();
    clearSkills();
}

class ModelTest : public ::testing::Test {
  protected:
    void SetUp() override { clearModel(); }
    void TearDown() override { clearModel(); }
};

class ModelFileTest : public TempDirTest {
  protected:
    void SetUp() override {
        clearModel();
        TempDirTest::SetUp();
    }
    void TearDown() override {
        clearModel();
        TempDirTest::TearDown();
    }
};
