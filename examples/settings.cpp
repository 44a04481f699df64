// The settings of a program: a class with defaults, saved as a file and loaded again. Only what
// differs from the defaults is written, and what a file does not mention keeps its default, so that
// files of older and newer versions can be read.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "common/utf8.h"
#include "nuObj2Xml.h"

enum class Theme { Light, Dark, System };

template <> struct host::EnumNames<Theme> {
    static constexpr auto all = host::names<Theme>(
        {{Theme::Light, u"light"}, {Theme::Dark, u"dark"}, {Theme::System, u"system"}});
};

class TWindow : public host::Published<TWindow> {
public:
    std::int32_t Width = 1024;
    std::int32_t Height = 768;
    bool Maximized = false;

    static constexpr auto published =
        host::publish<TWindow>(u"TWindow", host::prop<&TWindow::Width>().Default(1024),
                               host::prop<&TWindow::Height>().Default(768),
                               host::prop<&TWindow::Maximized>().Default(false));
};

class TSettings : public host::Published<TSettings> {
public:
    std::u16string Language = u"en";
    Theme Colors = Theme::System;
    double Volume = 0.8;
    TWindow Window;
    std::vector<std::u16string> RecentFiles;

    static constexpr auto published = host::publish<TSettings>(
        u"TSettings", host::prop<&TSettings::Language>().Default(u"en"),
        host::prop<&TSettings::Colors>().Default(Theme::System).Alias(u"Theme"),
        host::prop<&TSettings::Volume>().Default(0.8), host::prop<&TSettings::Window>(),
        host::prop<&TSettings::RecentFiles>());
};

int main() {
    const auto file = std::filesystem::temp_directory_path() / "nuxml-settings-example.xml";
    TSettings settings;
    settings.Colors = Theme::Dark;
    settings.Window.Width = 1280;
    settings.RecentFiles = {u"/home/ann/a & b.txt", u"/home/ann/zoë.txt"};
    NuSaveObject(file, settings);

    std::ifstream written(file);
    std::cout << written.rdbuf() << '\n';

    TSettings loaded;
    NuLoadObject(file, loaded);
    std::cout << loaded.Window.Width << " x " << loaded.Window.Height << ", volume "
              << loaded.Volume << ", " << NuToUtf8(loaded.RecentFiles.at(1)) << '\n';
    std::filesystem::remove(file);

    // What somebody wrote by hand, an older name among it, and a mistake.
    NuDeSerializeObject(loaded, u"<Settings><Theme>light</Theme><Sound>on</Sound></Settings>");
    std::cout << (loaded.Colors == Theme::Light ? "light" : "not light") << '\n';
    try {
        NuDeSerializeObject(loaded,
                            u"<Settings>\n <Window><Width>wide</Width></Window></Settings>");
    } catch (const host::EConvertError& error) {
        std::cout << error.what() << '\n';
    }
}
