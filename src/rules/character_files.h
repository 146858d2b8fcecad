// The character files: "characters.idx" and "npcs.idx" list who exists, and each character has
// its own "<name>.chr" or "<name>.npc".
#pragma once

#include <istream>
#include <string>

class Character;

// Loads everyone the two index files list; a missing "characters.idx" loads no NPC either.
void loadCharacters();
// Reads "<name>.npc" or "<name>.chr" into a new character, filed in its list at once; null when
// the file cannot be opened.
Character* loadCharacter(const std::string& name, bool isNpc);
// The sections of a character file, in any order; other lines are passed over.
void readCharacter(std::istream& in, Character& c);
// Writes the character's file, and then lists it in its index file if that exists and lacks the
// name. Each file is replaced only by a complete new version, and a symbolic link is written
// through to its target. False when the character could not be written, and then neither file
// has changed; `failure`, if given, names the file and the reason, for the user.
bool saveCharacter(Character& c, std::string* failure = nullptr);
