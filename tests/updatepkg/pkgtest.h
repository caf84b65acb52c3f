#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "host/settings.h"
#include "support/fakehost.h"
#include "updatepkg/xupdatepkgsender.h"
#include "updatepkg/xupdatepkgtrace.h"
#include "xtaskbase.h"

/// A healthy client without an offer.
class PkgTest : public testing::Test {
protected:
    PkgTest() { trace.setData(nullptr); }

    /// Lets the channel hold an offer with these members.
    std::shared_ptr<UpgradeData> holds(const std::string& json) {
        auto data = std::make_shared<UpgradeData>();
        data->fromStored(json);
        trace.setData(data);
        return data;
    }
    std::string stored() { return host.settings.text(settingkeys::upgrade); }

    void notify(const void* record, int type = 7) {
        FakeNotification notification(type, record);
        trace.onNotification(&notification);
    }
    /// A command in a record that ends behind its code.
    void command(std::int32_t code) { notify(std::make_unique<std::int32_t>(code).get()); }

    /// What a task does, in its order: its events, and what it gives `finish`, which lets it
    /// go, as "+" or "-". Without either sign it has gone on.
    std::string run(std::shared_ptr<IXTaskBase> task, bool chained = false) {
        std::string ends;
        task->setNext(chained ? std::make_shared<XTaskBase>() : nullptr);
        task->check([&](bool succ) {
            ends += events() + (succ ? "+" : "-");
            task.reset();
        });
        return ends.append(events());
    }

    /// The events since the last call, as "code text|", each compared to its last byte.
    std::string events() {
        std::string all;
        for (const auto& [type, record] : host.notifications.posts) {
            const std::string text = record.c_str() + 4;
            EXPECT_EQ(record.substr(1),
                      std::string(3, 0) + text + std::string(1024 - text.size(), '\0'));
            all += std::to_string(record[0]) + (text.empty() ? "|" : " " + text + "|");
            EXPECT_EQ(type, 7);
        }
        host.notifications.posts.clear();
        return all;
    }

    FakeHost host;
    XUpdatePkgTrace& trace = XUpdatePkgTrace::instance();
    std::shared_ptr<XUpdatePkgSender> sender = std::make_shared<XUpdatePkgSender>();
};
