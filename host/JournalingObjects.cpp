#include "host/JournalingObjects.h"

namespace pluvarine {

namespace {

using Json = nlohmann::ordered_json;

Json six(const std::array<float, 6>& values) {
    return values;
}

// The object wrapped in its journaling decorator; nothing stays nothing.
template <typename Decorator, typename Object>
std::shared_ptr<Object> wrap(std::shared_ptr<Object> object, HostJournal& journal) {
    if (!object) {
        return nullptr;
    }
    return std::make_shared<Decorator>(std::move(object), journal);
}

class JournalingElement : public HostElement {
public:
    JournalingElement(std::shared_ptr<HostElement> inner, HostJournal& journal)
        : m_inner(std::move(inner)), m_journal(journal) {}

    void PrepareElement(bool flag) override {
        m_journal.call("element", "PrepareElement", Json::array({flag}),
                       [&] { m_inner->PrepareElement(flag); });
    }
    std::int32_t SetElementMatrix(const PlacementMatrix& matrix) override {
        return m_journal.call("element", "SetElementMatrix",
                              Json::array({HostJournal::value(matrix)}),
                              [&] { return m_inner->SetElementMatrix(matrix); });
    }
    std::int32_t CommitElement(bool flag) override {
        return m_journal.call("element", "CommitElement", Json::array({flag}),
                              [&] { return m_inner->CommitElement(flag); });
    }

private:
    std::shared_ptr<HostElement> m_inner;
    HostJournal& m_journal;
};

class JournalingObjectTemplate : public HostObjectTemplate {
public:
    JournalingObjectTemplate(std::shared_ptr<HostObjectTemplate> inner, HostJournal& journal)
        : m_inner(std::move(inner)), m_journal(journal) {}

    std::shared_ptr<HostElement> CreateElement(void* parent, std::int32_t flags) override {
        return m_journal.call("template", "CreateElement",
                              Json::array({parent ? Json("object") : Json(nullptr), flags}), [&] {
                                  return wrap<JournalingElement>(
                                      m_inner->CreateElement(parent, flags), m_journal);
                              });
    }

private:
    std::shared_ptr<HostObjectTemplate> m_inner;
    HostJournal& m_journal;
};

class JournalingRoofData : public HostRoofData {
public:
    JournalingRoofData(std::shared_ptr<HostRoofData> inner, HostJournal& journal)
        : m_inner(std::move(inner)), m_journal(journal) {}

    double GetRoofingThickness() override {
        return m_journal.call("roofData", "GetRoofingThickness", Json::array(),
                              [&] { return m_inner->GetRoofingThickness(); });
    }
    double GetGutterWidth() override {
        return m_journal.call("roofData", "GetGutterWidth", Json::array(),
                              [&] { return m_inner->GetGutterWidth(); });
    }
    double GetFaceOverhang(std::int32_t face, bool& ignored) override {
        return m_journal.call("roofData", "GetFaceOverhang", Json::array({face}),
                              [&] { return m_inner->GetFaceOverhang(face, ignored); });
    }
    double GetFacePitch(std::int32_t face) override {
        return m_journal.call("roofData", "GetFacePitch", Json::array({face}),
                              [&] { return m_inner->GetFacePitch(face); });
    }
    double GetFaceDirection(std::int32_t face) override {
        return m_journal.call("roofData", "GetFaceDirection", Json::array({face}),
                              [&] { return m_inner->GetFaceDirection(face); });
    }

private:
    std::shared_ptr<HostRoofData> m_inner;
    HostJournal& m_journal;
};

class JournalingRoof : public HostRoof {
public:
    JournalingRoof(std::shared_ptr<HostRoof> inner, HostJournal& journal)
        : m_inner(std::move(inner)), m_journal(journal) {}

    std::shared_ptr<HostRoofData> GetRoofData() override {
        return m_journal.call("roof", "GetRoofData", Json::array(), [&] {
            return wrap<JournalingRoofData>(m_inner->GetRoofData(), m_journal);
        });
    }
    std::int32_t FindRoofFaceAt(bool flag, float x, float y, float& height,
                                std::array<float, 6>& values, bool& ignored) override {
        const Json arguments = Json::array({flag, x, y, six(values)});
        return m_journal.call(
            "roof", "FindRoofFaceAt", arguments,
            [&] { return m_inner->FindRoofFaceAt(flag, x, y, height, values, ignored); },
            [&] {
                return Json{{"height", height}};
            });
    }

private:
    std::shared_ptr<HostRoof> m_inner;
    HostJournal& m_journal;
};

class JournalingRoofList : public HostRoofList {
public:
    JournalingRoofList(std::shared_ptr<HostRoofList> inner, HostJournal& journal)
        : m_inner(std::move(inner)), m_journal(journal) {}

    std::shared_ptr<HostRoof> FindRoofAt(bool flag, float x, float y, std::int32_t& ignored,
                                         std::array<float, 6>& values, bool& ignoredFlag) override {
        const Json arguments = Json::array({flag, x, y, six(values)});
        return m_journal.call("roofList", "FindRoofAt", arguments, [&] {
            return wrap<JournalingRoof>(
                m_inner->FindRoofAt(flag, x, y, ignored, values, ignoredFlag), m_journal);
        });
    }

private:
    std::shared_ptr<HostRoofList> m_inner;
    HostJournal& m_journal;
};

class JournalingBuilding : public HostBuilding {
public:
    JournalingBuilding(std::shared_ptr<HostBuilding> inner, HostJournal& journal)
        : m_inner(std::move(inner)), m_journal(journal) {}

    std::shared_ptr<HostRoofList> GetRoofList() override {
        return m_journal.call("building", "GetRoofList", Json::array(), [&] {
            return wrap<JournalingRoofList>(m_inner->GetRoofList(), m_journal);
        });
    }

private:
    std::shared_ptr<HostBuilding> m_inner;
    HostJournal& m_journal;
};

} // namespace

std::shared_ptr<HostBuilding> journaled(std::shared_ptr<HostBuilding> building,
                                        HostJournal& journal) {
    return wrap<JournalingBuilding>(std::move(building), journal);
}

std::shared_ptr<HostObjectTemplate> journaled(std::shared_ptr<HostObjectTemplate> objectTemplate,
                                              HostJournal& journal) {
    return wrap<JournalingObjectTemplate>(std::move(objectTemplate), journal);
}

} // namespace pluvarine
