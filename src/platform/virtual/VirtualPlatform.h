#pragma once

#include <string>

#include "platform/virtual/VirtualAudio.h"
#include "platform/virtual/VirtualCalendar.h"
#include "platform/virtual/VirtualDefaults.h"
#include "platform/virtual/VirtualMainQueue.h"
#include "platform/virtual/VirtualRandom.h"
#include "platform/virtual/VirtualRegistry.h"
#include "platform/virtual/VirtualResources.h"
#include "platform/virtual/VirtualThreads.h"
#include "platform/virtual/VirtualWorkspace.h"

namespace quiverly {

// A laptop that exists only in memory: every port of the road is answered by one of its parts, so that whatever happens
// on it happens again to the bit.
//
// The ports serve the one instance that is alive. Its destruction, after that of everything that runs on it, ends the
// program with a message if anything opened was not closed or anything lent was not given back.
class VirtualPlatform {
public:
    VirtualPlatform();
    ~VirtualPlatform();
    VirtualPlatform(const VirtualPlatform&) = delete;
    VirtualPlatform& operator=(const VirtualPlatform&) = delete;

    static VirtualPlatform& current();

    // Ends the program: something broke the rules of a port.
    [[noreturn]] static void fault(const std::string& what);

    VirtualCalendar calendar;
    VirtualThreads threads;
    VirtualRegistry registry;
    VirtualMainQueue mainQueue;
    VirtualResources resources;
    VirtualRandom random;
    VirtualAudio audio;
    VirtualDefaults defaults;
    VirtualWorkspace workspace;
};

} // namespace quiverly
