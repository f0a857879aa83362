#pragma once
// Counting the component instances of the real form files against the classes registered
// now: how many have a known class, how many the reader builds (it skips a component of
// an unknown class with everything inside it), and which classes are missing.

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lumora::test {

// Every corpus form: the binary files, the binary side of the pairs, the text files.
std::vector<std::filesystem::path> CorpusForms();

struct TCorpusCount {
  int Forms = 0;                // that convert to a stream (the rest are not forms)
  long Instances = 0;           // child components declared (each form's root aside)
  long Known = 0;               // of a registered class, wherever they sit
  long KnownInsideUnknown = 0;  // of those, inside a component of an unregistered class
  long Built = 0;               // created by the reader
  std::map<std::string, long> Missing;  // instances of each unregistered class, wherever they sit
};

// Reads every form of `files` with the classes registered now (errors passed over).
TCorpusCount CountCorpusComponents(const std::vector<std::filesystem::path>& files);

// The `n` classes most often missing, most frequent first (ties by name).
std::vector<std::pair<std::string, long>> MostFrequentMissing(const TCorpusCount& count, std::size_t n);

// "  93688 child components in 3566 forms: ... / the 20 most frequent classes still missing: ..."
void PrintCorpusCount(const std::string& title, const TCorpusCount& count);

}  // namespace lumora::test
