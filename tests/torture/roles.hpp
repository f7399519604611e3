// The parts that a process of the torture program plays: four trials, and the roles that they give out.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tallowmere::torture {

using Arguments = std::vector<std::string>;

/// Kills processes at random moments; after each a fresh one attaches, reads and writes. Half of them without the
/// user's settings and files, then half with. Exit code.
int runKills(unsigned kills, std::uint32_t seed);
int beVictim(const Arguments& arguments);   // attacher, writer or reader; until it is killed
int beNewcomer(const Arguments& arguments); // after a kill

/// Loads the library, one that attaches late and an empty one in fresh processes; without the user's settings and
/// files, then with. Exit code.
int runAttaches(unsigned rounds);
int beLoader(const Arguments& arguments); // of the library, late or empty

/// Eight processes write and read at full speed. Exit code.
int runReaders(unsigned seconds);
int beRacer(const Arguments& arguments); // writer or reader

/// Many processes on all boats at full speed while others come and go. Exit code.
int runLoad(unsigned processes, unsigned seconds);
int beSitter(const Arguments& arguments); // attached all the time
int beFeeder(const Arguments& arguments); // writes everything in turn
int beComer(const Arguments& arguments);  // attaches and detaches each 100 ms

} // namespace tallowmere::torture
