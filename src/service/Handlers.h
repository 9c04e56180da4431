// The handlers of the calls: one for each operation of an engine, for what a session does with its
// engines, and for what an editor asks.
#pragma once

namespace ORKBASE {

class Call;

void RunHelp(Call& call);
void RunNew(Call& call);
void RunCopy(Call& call);
void RunDrop(Call& call);
void RunSetThreadLanguage(Call& call);
void RunConnect(Call& call);
void RunSetRt(Call& call);
void RunSetDts(Call& call);
void RunSetCAXDD(Call& call);
void RunSet(Call& call);
void RunGet(Call& call);
void RunVerify(Call& call);
void RunGetSpec(Call& call);
void RunCompose(Call& call);
void RunAddIsNull(Call& call);
void RunRemoveDt(Call& call);
void RunIsDtsInExp(Call& call);
void RunReplaceDtOrDfNames(Call& call);
void RunChangeExpWithNewDtDfNames(Call& call);
void RunGetDict(Call& call);
void RunGetSysTabName(Call& call);
void RunTranslate(Call& call);

void RunCheck(Call& call);
void RunComplete(Call& call);
void RunSignature(Call& call);
void RunExplain(Call& call);
void RunUses(Call& call);
void RunWrite(Call& call);
void RunFormat(Call& call);
void RunCapabilities(Call& call);
void RunTables(Call& call);
void RunFields(Call& call);

}  // namespace ORKBASE
