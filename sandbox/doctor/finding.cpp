#include "sandbox/doctor/finding.h"

#include <algorithm>
#include <array>

namespace sandbox::doctor {
namespace {

constexpr Severity fault = Severity::fault;
constexpr Severity notice = Severity::notice;

constexpr std::array<Kind, 42> kinds{{
    {Code::unreadableFile, "unreadable-file", fault,
     "the client cannot read it either, so it is replaced by no update",
     "give the client's user the right to read it, or reinstall the file"},
    {Code::strangeFile, "strange-file", notice,
     "a link, pipe or device stands where the client has files", "see who put it there"},
    {Code::moduleMissing, "module-missing", fault,
     "the updater binds the module by name and does without it, and without a word",
     "repair the installation"},
    {Code::listMissing, "list-missing", fault,
     "updates do not make the list; the uninstaller knows no file of the client",
     "repair the installation"},
    {Code::listUnreadable, "list-unreadable", fault,
     "every update leaves the list as it is, and the uninstaller cannot read it",
     "repair the installation; an update does not"},
    {Code::listDamaged, "list-damaged", fault,
     "the entry does not describe a file; an update adds no attribute that is missing",
     "repair the entry"},
    {Code::listOutside, "list-outside", fault,
     "the uninstaller would touch a file that is not the client's", "remove the entry"},
    {Code::listDouble, "list-double", notice,
     "updates change the first entry of a name only, so the second is out of date for good",
     "remove the second entry"},
    {Code::listFileMissing, "list-file-missing", fault,
     "the file was deleted, or a replace broke off between its two moves",
     "look for the old file in update\\temp before a restart; the next update that offers the "
     "file puts it in place"},
    {Code::listContent, "list-md5", fault,
     "something else than an update changed the file, or its group was taken back",
     "compare with the platform's file; a newer version of it repairs both"},
    {Code::listSize, "list-size", notice,
     "content and list agree but for the size: the list was written while another file stood "
     "there, and no restart explains it",
     "nothing for the client; the next version of the file writes it anew"},
    {Code::listVersion, "list-version", fault,
     "the client believes its own file, not the list: updates are offered by that version",
     "compare with the platform; a newer version of the file writes it anew"},
    {Code::listKind, "list-kind", notice,
     "the list is wrong on whether the file has a version of its own",
     "nothing for the client; the next version of the file writes it anew"},
    {Code::versionsUnreadable, "versions-unreadable", fault,
     "data files count as having no version and are fetched again", "restore the version store"},
    {Code::versionForm, "version-form", notice,
     "parts that are no numbers count as 0, and more than 63 bytes are not read at all",
     "store a version of dotted numbers"},
    {Code::versionKey, "version-key", notice,
     "nobody asks for the entry under that name: the client's own paths are relative to its "
     "folder, with \\ between names",
     "remove the entry"},
    {Code::versionFileMissing, "version-file-missing", notice,
     "the store has a version for a file that is not there; the file is put in place whatever "
     "its version",
     "find out who deleted the file"},
    {Code::versionShadowed, "version-shadowed", notice,
     "the file has a version of its own, which counts; the store's is never looked at",
     "remove the entry"},
    {Code::channelVersion, "channel-version", notice,
     "the client reports itself as 0.0.0.0 and is offered every material: four parts are asked "
     "for, none below those of 1.0.0.1001",
     "nothing, unless the packet's version is wrong"},
    {Code::settingsUnreadable, "settings-unreadable", fault,
     "every setting counts as not there: what waits for a restart is forgotten",
     "restore the settings store while the host is stopped"},
    {Code::settingNoJson, "setting-no-json", fault,
     "the channel that reads the setting ends with an error, or takes it as empty",
     "store the empty text while the host is stopped"},
    {Code::settingKind, "setting-kind", fault,
     "the setting has another form than its readers ask for, and counts as empty or ends them",
     "store the empty text, or 0, while the host is stopped"},
    {Code::paddingOutside, "padding-outside", fault,
     "a cleaning run would delete a file outside the folder update",
     "remove the entry while the host is stopped"},
    {Code::paddingDouble, "padding-double", fault,
     "one waiting file cannot arrive at two places; only the first replace finds it",
     "restart, then let the update run again"},
    {Code::waitingGone, "waiting-file-gone", fault,
     "the file that was to replace the target at a restart is gone, and the target is not it",
     "restart; set update\\version.dat back so that the packet is offered again"},
    {Code::waitingChanged, "waiting-file-changed", fault,
     "the restart would put a file in place that is not what was downloaded",
     "delete the waiting file before the restart and let the update run again"},
    {Code::waitingNotScheduled, "waiting-not-scheduled", fault,
     "the file waits, but no restart will put it in place", "let the update run again"},
    {Code::delayedUnreadable, "delayed-unreadable", fault, "what waits for the restart is unknown",
     "see that the system's list can be read"},
    {Code::delayedDamaged, "delayed-damaged", fault,
     "a request in the system's list is none, and the restart passes over it",
     "restart; then let the update run again"},
    {Code::delayedOutside, "delayed-outside", fault,
     "at the restart a file is moved over the client's border",
     "withdraw the request before the restart; find out who made it"},
    {Code::delayedForeign, "delayed-foreign", notice,
     "the updater moves from update only; another program asked for this", "see who did"},
    {Code::delayedDelete, "delayed-delete", fault,
     "the restart deletes a file that is not in update\\temp, where old files go",
     "withdraw the request before the restart; find out who made it"},
    {Code::delayedDouble, "delayed-double", fault,
     "two requests name one target or one source: the order in the list decides",
     "restart, then let the update run again"},
    {Code::delayedSourceGone, "delayed-source-gone", fault,
     "the restart finds nothing to put in place, and the target stays as it is",
     "restart; set update\\version.dat back so that the packet is offered again"},
    {Code::delayedUnlisted, "delayed-unlisted", notice,
     "the restart puts the file in place, but the padding list does not know: nobody cleans up "
     "if it cannot",
     "restart"},
    {Code::updateLeftover, "update-leftover", notice,
     "a download that was not put in place: a run broke off, or its row was refused",
     "read the last run's log; the next run uses the file again"},
    {Code::updateForeign, "update-foreign", notice,
     "neither the updater nor a cabinet of the run has put the file there", "see who did"},
    {Code::transferLeftover, "transfer-leftover", notice,
     "a data file of the file channel did not arrive, or its target was in use",
     "start the host anew when server and target are well"},
    {Code::tempLeftover, "temp-leftover", notice,
     "an old file that no list names and no restart deletes stays for good",
     "when every target is there and the machine has been restarted: delete it"},
    {Code::packageFile, "package-file", fault,
     "the stored offer says that the package is there, but update\\setup.exe is not it; an "
     "install of the user would start what is there",
     "let a check and a download run again"},
    {Code::packagePending, "package-pending", notice,
     "the package did not get to its end: a transfer that broke off, a wrong package, or a setup "
     "that did not bring the offered version",
     "see the setup's own log, and the offer on the upgrade server"},
    {Code::fileInUse, "file-in-use", notice,
     "an update of the file is left to the restart; those of patchlib0.dat and patchlib1.dat fail",
     "end the program, or restart after the update"},
}};

} // namespace

std::span<const Kind> allKinds() {
    return kinds;
}

const Kind& kindOf(Code code) {
    return *std::find_if(kinds.begin(), kinds.end(),
                         [code](const Kind& kind) { return kind.code == code; });
}

} // namespace sandbox::doctor
