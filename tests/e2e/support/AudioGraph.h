#pragma once

#include "tests/support/Waiting.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {

using Properties = std::map<std::string, std::string>;

/// One object of the server, as its registry and, for nodes and clients, its own words tell it.
struct GraphObject {
    std::uint32_t id = 0;
    /// "Node", "Port", "Link", "Client", …
    std::string type;
    Properties properties;
    /// Of a node: it takes part in the cycles.
    bool isRunning = false;

    /// Empty when there is none.
    [[nodiscard]] std::string get(const std::string& key) const;
    [[nodiscard]] std::uint32_t number(const std::string& key) const;
};

/// A device without hardware, as the tests plug it in.
struct NullSink {
    std::string name;
    /// Channel positions, comma-separated.
    std::string positions = "FL,FR";
    std::uint32_t rate = 48000;
    /// The higher one becomes the default.
    std::uint32_t priority = 1000;
    /// What people read; empty for one made of the name.
    std::string description = {};
};

/// The server seen from outside, through a connection of its own: what there is, who is linked to
/// whom, and the acts of a user or of other programs. Every call may be made from any thread.
class AudioGraph {
public:
    /// Connects to the server that the environment names; throws std::runtime_error.
    AudioGraph();
    AudioGraph(const AudioGraph&) = delete;
    AudioGraph& operator=(const AudioGraph&) = delete;
    ~AudioGraph();

    /// Returns when the server has done everything asked so far.
    void synchronise() const;

    [[nodiscard]] std::vector<GraphObject> objects() const;
    [[nodiscard]] std::vector<GraphObject> nodes() const;
    [[nodiscard]] std::optional<GraphObject> node(const std::string& name) const;

    /// All nodes of a process, also those that come through the bridges.
    [[nodiscard]] std::vector<GraphObject> nodesOf(pid_t pid) const;
    /// Playback streams of a process, also those that come through the bridges.
    [[nodiscard]] std::vector<GraphObject> playbackNodes(pid_t pid) const;
    /// Waits for the first one; throws when it does not come.
    GraphObject awaitPlayback(pid_t pid) const;

    /// Ports of a node in the order of their channels. `isMonitor` picks the monitor's of a device.
    [[nodiscard]] std::vector<std::uint32_t> outputPorts(std::uint32_t node,
                                                         bool isMonitor = false) const;
    [[nodiscard]] std::vector<std::uint32_t> inputPorts(std::uint32_t node) const;
    /// Names of the nodes that the outputs of a node are linked to, each once, in order.
    [[nodiscard]] std::vector<std::string> targets(std::uint32_t node) const;

    /// Makes the device and waits for its ports.
    void plug(const NullSink& sink) const;
    /// Makes a node with exactly these properties, whatever they may be, and waits for nothing.
    void makeNode(const Properties& properties) const;
    /// Destroys the device and waits until it is gone.
    void unplug(const std::string& name) const;

    [[nodiscard]] bool hasMetadata(const std::string& metadata) const;
    [[nodiscard]] std::optional<std::string>
    metadata(const std::string& metadata, std::uint32_t subject, const std::string& key) const;
    /// An absent value deletes the entry.
    void setMetadata(const std::string& metadata, std::uint32_t subject, const std::string& key,
                     const std::string& type, const std::optional<std::string>& value) const;

    /// The user's choice of the default device; waits until it holds.
    void chooseDefault(const std::string& sink) const;
    [[nodiscard]] std::string defaultSink() const;
    /// Frames of every cycle; 0 leaves it to the programs again.
    void forceQuantum(std::uint32_t frames) const;
    void forceRate(std::uint32_t hertz) const;

    /// A link that stays until one of its ends goes.
    void link(std::uint32_t outputPort, std::uint32_t inputPort) const;

    /// Waits for a condition on the graph; throws with the words of `what` when it does not come.
    void await(const std::string& what, const std::function<bool()>& isSo,
               Seconds bound = Seconds(10)) const;

    /// Nodes, their states and links, for messages of failed tests.
    [[nodiscard]] std::string describe() const;

private:
    class Mirror;
    [[nodiscard]] std::vector<std::uint32_t> ports(std::uint32_t node, const char* direction,
                                                   bool isMonitor) const;
    std::unique_ptr<Mirror> mirror_;
};

} // namespace orvanta::test
