// SPDX-License-Identifier: GPL-3.0-or-later
// Measures how the duration of operations on all channels grows with the number of custom channels.
// Includes everything that the user waits for: reading the stored settings and drawing the result.
#include "app/AppDelegate.h"
#include "app/Collaborators.h"
#include "app/Services.h"
#include "model/ChannelLookup.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/VideoView.h"
#include "support/RecordingActions.h"
#include "ui/menus/ContextMenuBuilder.h"
#include "ui/menus/MenuRenderer.h"
#include "ui/menus/StatusMenuBuilder.h"
#include "ui/settings/SettingsWindow.h"

#include <QApplication>
#include <QMenu>
#include <QTabWidget>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <memory>

using namespace orvane;
using namespace Qt::StringLiterals;

namespace {

/// The services of a program that is not started, with custom channels.
class Fixture {
public:
    explicit Fixture(int channels)
        : services(Environment{}, m_folder.filePath(u"preferences.json"_s), VideoOutput::software) {
        QList<Channel> custom;
        for (int i = 0; i < channels; ++i)
            custom += Channel::custom(u"handle%1"_s.arg(i), u"Station number %1"_s.arg(i));
        services.preferences.setCustomChannels(custom);
    }

    [[nodiscard]] MenuSources menuSources() const {
        return {services.registry, services.preferences, services.state, [] { return false; }};
    }

private:
    QTemporaryDir m_folder;

public:
    Services services;
};

/// Kept between repetitions, so that storing ten thousand channels is not measured.
Fixture& fixture(const benchmark::State& state) {
    static std::map<int, std::unique_ptr<Fixture>> fixtures;
    const int channels = static_cast<int>(state.range(0));
    std::unique_ptr<Fixture>& entry = fixtures[channels];
    if (!entry)
        entry = std::make_unique<Fixture>(channels);
    return *entry;
}

void showMenu(benchmark::State& state, const std::function<Menu(const MenuSources&)>& build) {
    const MenuSources sources = fixture(state).menuSources();
    test::RecordingActions actions;
    for (auto _ : state) {
        // As at the first opening: later ones keep the entries.
        QMenu menu;
        renderMenu(build(sources), actions, menu);
        benchmark::DoNotOptimize(menu.sizeHint());
    }
}

void statusMenu(benchmark::State& state) {
    showMenu(state, [](const MenuSources& sources) { return StatusMenuBuilder::build(sources); });
}

void contextMenu(benchmark::State& state) {
    showMenu(state, [](const MenuSources& sources) {
        return ContextMenuBuilder::build(sources, StatusItemPresence::absent);
    });
}

void lookUp(benchmark::State& state, const QString& text) {
    const ChannelRegistry& registry = fixture(state).services.registry;
    for (auto _ : state)
        benchmark::DoNotOptimize(ChannelLookup::find(registry.all(), text));
}

void lookUpByName(benchmark::State& state) {
    lookUp(state, u"station number %1"_s.arg(state.range(0) - 1));
}

void lookUpUnknown(benchmark::State& state) {
    lookUp(state, u"no such station"_s);
}

void stepFromLast(benchmark::State& state) {
    const ChannelRegistry& registry = fixture(state).services.registry;
    const std::optional<Channel> last = registry.all().last();
    for (auto _ : state)
        benchmark::DoNotOptimize(registry.enabledNeighbor(last, ChannelStep::next));
}

void showPage(benchmark::State& state, const QString& title) {
    SettingsWindow window(settingsWindowCollaborators(fixture(state).services, {}));
    auto* tabs = window.findChild<QTabWidget*>(u"tabView"_s);
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->tabText(i) == title)
            tabs->setCurrentIndex(i);
    }
    const auto show = [&window] {
        window.show();
        QCoreApplication::processEvents();
        // Deletes the list that was shown before, so that the next round does not pay for it.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    show();
    for (auto _ : state) {
        state.PauseTiming();
        window.hide();
        state.ResumeTiming();
        show();
    }
}

void channelsPage(benchmark::State& state) {
    showPage(state, u"Channels"_s);
}

void addChannelPage(benchmark::State& state) {
    showPage(state, u"Add Channel"_s);
}

void sizes(benchmark::internal::Benchmark* part) {
    part->Arg(0)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(statusMenu)->Apply(sizes);
BENCHMARK(contextMenu)->Apply(sizes);
BENCHMARK(lookUpByName)->Apply(sizes);
BENCHMARK(lookUpUnknown)->Apply(sizes);
BENCHMARK(stepFromLast)->Apply(sizes);
BENCHMARK(channelsPage)->Apply(sizes);
BENCHMARK(addChannelPage)->Apply(sizes);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    useNumericCLocale();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
