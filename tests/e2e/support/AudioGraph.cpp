#include "tests/e2e/support/AudioGraph.h"

#include "tests/e2e/support/GraphMirror.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace orvanta::test {

namespace {

/// The Pulse bridge speaks for others: its own process id is nobody's player.
bool isPulseBridge(const GraphObject& client) {
    return client.get("client.api") == "pipewire-pulse";
}

std::string processOf(const GraphObject& node, const std::vector<GraphObject>& objects) {
    if (std::string own = node.get("application.process.id"); !own.empty())
        return own;
    const auto client = std::ranges::find_if(objects, [&](const GraphObject& object) {
        return object.type == "Client" && object.id == node.number("client.id");
    });
    if (client == objects.end())
        return "";
    if (std::string told = client->get("application.process.id"); !told.empty())
        return told;
    return isPulseBridge(*client) ? "" : client->get("pipewire.sec.pid");
}

} // namespace

std::string GraphObject::get(const std::string& key) const {
    const auto found = properties.find(key);
    return found == properties.end() ? "" : found->second;
}

std::uint32_t GraphObject::number(const std::string& key) const {
    return static_cast<std::uint32_t>(std::strtoul(get(key).c_str(), nullptr, 10));
}

AudioGraph::AudioGraph() : mirror_(std::make_unique<Mirror>()) {}

AudioGraph::~AudioGraph() = default;

void AudioGraph::synchronise() const {
    const Mirror::Lock lock(*mirror_);
    mirror_->synchronise();
}

std::vector<GraphObject> AudioGraph::objects() const {
    const Mirror::Lock lock(*mirror_);
    std::vector<GraphObject> all;
    for (const auto& [id, object] : mirror_->objects())
        all.push_back(object);
    return all;
}

std::vector<GraphObject> AudioGraph::nodes() const {
    std::vector<GraphObject> found = objects();
    std::erase_if(found, [](const GraphObject& object) { return object.type != "Node"; });
    return found;
}

std::optional<GraphObject> AudioGraph::node(const std::string& name) const {
    for (GraphObject& candidate : nodes())
        if (candidate.get("node.name") == name)
            return std::move(candidate);
    return std::nullopt;
}

std::vector<GraphObject> AudioGraph::nodesOf(pid_t pid) const {
    const std::vector<GraphObject> all = objects();
    std::vector<GraphObject> found;
    for (const GraphObject& object : all)
        if (object.type == "Node" && processOf(object, all) == std::to_string(pid))
            found.push_back(object);
    return found;
}

std::vector<GraphObject> AudioGraph::playbackNodes(pid_t pid) const {
    std::vector<GraphObject> found = nodesOf(pid);
    std::erase_if(found, [](const GraphObject& node) {
        return node.get("media.class") != "Stream/Output/Audio";
    });
    return found;
}

GraphObject AudioGraph::awaitPlayback(pid_t pid) const {
    std::vector<GraphObject> found;
    await("process " + std::to_string(pid) + " plays", [&] {
        found = playbackNodes(pid);
        return !found.empty() && found.front().isRunning && !outputPorts(found.front().id).empty();
    });
    return found.front();
}

std::vector<std::uint32_t> AudioGraph::ports(std::uint32_t node, const char* direction,
                                             bool isMonitor) const {
    std::vector<GraphObject> found;
    for (const GraphObject& object : objects())
        if (object.type == "Port" && object.number("node.id") == node &&
            object.get("port.direction") == direction &&
            (object.get("port.monitor") == "true") == isMonitor)
            found.push_back(object);
    std::ranges::sort(found, {}, [](const GraphObject& port) { return port.number("port.id"); });
    std::vector<std::uint32_t> ids;
    for (const GraphObject& port : found)
        ids.push_back(port.id);
    return ids;
}

std::vector<std::uint32_t> AudioGraph::outputPorts(std::uint32_t node, bool isMonitor) const {
    return ports(node, "out", isMonitor);
}

std::vector<std::uint32_t> AudioGraph::inputPorts(std::uint32_t node) const {
    return ports(node, "in", false);
}

std::vector<std::string> AudioGraph::targets(std::uint32_t node) const {
    const std::vector<GraphObject> all = objects();
    std::vector<std::string> names;
    for (const GraphObject& link : all)
        if (link.type == "Link" && link.number("link.output.node") == node)
            for (const GraphObject& target : all)
                if (target.id == link.number("link.input.node"))
                    names.push_back(target.get("node.name"));
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

void AudioGraph::plug(const NullSink& sink) const {
    const std::string description =
        sink.description.empty() ? "Test device " + sink.name : sink.description;
    makeNode({{"factory.name", "support.null-audio-sink"},
              {"node.name", sink.name},
              {"node.description", description},
              {"media.class", "Audio/Sink"},
              {"audio.rate", std::to_string(sink.rate)},
              {"audio.position", sink.positions},
              {"priority.session", std::to_string(sink.priority)},
              {"priority.driver", std::to_string(sink.priority)},
              {"monitor.channel-volumes", "true"},
              // WirePlumber 0.4 suspends a node some seconds after it fell idle, also one that has
              // left meanwhile, and crashes then.
              {"session.suspend-timeout-seconds", "0"}});
    const auto channelCount = static_cast<std::size_t>(std::ranges::count(sink.positions, ',') + 1);
    await("device " + sink.name + " has its ports", [&] {
        const auto device = node(sink.name);
        return device && outputPorts(device->id, true).size() == channelCount;
    });
}

void AudioGraph::makeNode(const Properties& properties) const {
    const Mirror::Lock lock(*mirror_);
    mirror_->create("adapter", PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, properties);
}

void AudioGraph::unplug(const std::string& name) const {
    if (const auto device = node(name)) {
        const Mirror::Lock lock(*mirror_);
        mirror_->destroy(device->id);
    }
    await("device " + name + " is gone", [&] { return !node(name).has_value(); });
}

bool AudioGraph::hasMetadata(const std::string& metadata) const {
    const Mirror::Lock lock(*mirror_);
    return mirror_->hasMetadata(metadata);
}

std::optional<std::string> AudioGraph::metadata(const std::string& metadata, std::uint32_t subject,
                                                const std::string& key) const {
    const Mirror::Lock lock(*mirror_);
    return mirror_->metadataValue(metadata, subject, key);
}

void AudioGraph::setMetadata(const std::string& metadata, std::uint32_t subject,
                             const std::string& key, const std::string& type,
                             const std::optional<std::string>& value) const {
    const Mirror::Lock lock(*mirror_);
    mirror_->setMetadata(metadata, subject, key, type, value);
    mirror_->synchronise();
}

void AudioGraph::chooseDefault(const std::string& sink) const {
    setMetadata("default", 0, "default.configured.audio.sink", "Spa:String:JSON",
                "{ \"name\": \"" + sink + "\" }");
    await(sink + " is the default", [&] { return defaultSink() == sink; });
}

std::string AudioGraph::defaultSink() const {
    const std::string value = metadata("default", 0, "default.audio.sink").value_or("");
    const std::size_t end = value.rfind('"');
    const std::size_t begin = end == std::string::npos ? end : value.rfind('"', end - 1);
    return begin == std::string::npos ? "" : value.substr(begin + 1, end - begin - 1);
}

void AudioGraph::forceQuantum(std::uint32_t frames) const {
    setMetadata("settings", 0, "clock.force-quantum", "", std::to_string(frames));
}

void AudioGraph::forceRate(std::uint32_t hertz) const {
    setMetadata("settings", 0, "clock.force-rate", "", std::to_string(hertz));
}

void AudioGraph::link(std::uint32_t outputPort, std::uint32_t inputPort) const {
    const Mirror::Lock lock(*mirror_);
    mirror_->create("link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK,
                    {{PW_KEY_LINK_OUTPUT_PORT, std::to_string(outputPort)},
                     {PW_KEY_LINK_INPUT_PORT, std::to_string(inputPort)}});
}

void AudioGraph::await(const std::string& what, const std::function<bool()>& isSo,
                       Seconds bound) const {
    if (!eventually(bound, isSo))
        throw std::runtime_error("in vain waited until " + what + "\n" + describe());
}

std::string AudioGraph::describe() const {
    std::ostringstream text;
    for (const GraphObject& object : nodes()) {
        text << object.id << " " << object.get("node.name") << " (" << object.get("media.class")
             << (object.isRunning ? ", running)" : ", not running)");
        for (const std::string& target : targets(object.id))
            text << " -> " << target;
        text << "\n";
    }
    return text.str();
}

} // namespace orvanta::test
