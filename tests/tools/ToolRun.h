// Runs the built tool as a caller does: arguments and input in, status and output back. The locale
// of a run is "C" unless a test names another, so texts are English wherever the suite runs.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

/// Path of the sample database.
inline const std::string kSampleDb = ORKRULE_SAMPLE_DB;

struct ToolResult {
  int status = -1;  ///< exit status; -1 when the tool was ended by a signal
  std::string out;
  std::string err;

  /// The lines of `out`, each read as JSON.
  std::vector<nlohmann::ordered_json> Json() const;
};

/// Starts the tool; its standard input, output and errors are descriptors of the caller. Returns
/// the process id.
int StartTool(const std::vector<std::string>& arguments, int in, int out, int err,
              const std::vector<std::string>& environment = {});
/// Waits for the end of the tool. Returns its exit status, -1 for a signal.
int WaitForTool(int process);

/// Runs the tool to its end. `environment` has entries "NAME=VALUE".
ToolResult RunTool(const std::vector<std::string>& arguments, const std::string& input = "",
                   const std::vector<std::string>& environment = {});

/// Runs `orkrule batch` on lines and returns the answers.
std::vector<nlohmann::ordered_json> RunBatch(const std::vector<std::string>& lines);

/// A line that connects the object "main" to the sample database.
std::string ConnectLine();
