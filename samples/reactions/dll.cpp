// SampleReactions.dll: the manager, and one package as its own class.
#include "samples/component/dll.h"
#include "samples/reactions/classes.h"
#include "samples/reactions/reaction_package.h"
#include "samples/reactions/reaction_package_manager.h"

namespace {

using namespace zelt::sample;

const com::ClassEntry kClasses[] = {
    {kReactionPackageManagerClass, com::CreateDefault<ReactionPackageManager>},
    {kReactionPackageClass, com::CreateDefault<ReactionPackage>},
};

const ComponentClass kRegistrations[] = {
    {kReactionPackageManagerClass,
     L"ZeltSample.ReactionsPackageManager",
     L"Sample reaction package manager",
     L"Kinetic and equilibrium reactions with published constants",
     L"1.0",
     {kReactionPackageManager10, kCapeOpenObject}},
    {kReactionPackageClass,
     L"ZeltSample.ReactionsPackage",
     L"Sample reaction package",
     L"Reactions that make or use hydrogen",
     L"1.0",
     {kReactionPackage10, kCapeOpenObject}},
};

}  // namespace

SAMPLE_DLL_EXPORTS(kClasses, kRegistrations)
