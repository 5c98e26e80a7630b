#pragma once

#include <string>

namespace pluvarine {

// The platform's HTML help: opens a topic of a help file, addressed as
// "<folder>/Tectaro.chm::/Pluvarine.htm". A missing file or topic is reported by the viewer
// in its own words.
class HelpViewer {
public:
    virtual ~HelpViewer() = default;
    virtual void HtmlHelp(const std::string& fileAndTopic) = 0;
};

} // namespace pluvarine
