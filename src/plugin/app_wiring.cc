#include "model/stagebeacon_class.h"

StagebeaconClass* Stagebeacon = nullptr;

StagebeaconClass::StagebeaconClass() : calVis(this), calGetData(this), friendsList(new FRIENDLIST) {
    setSharedStore(&protectedData);
}

StagebeaconClass::StagebeaconClass(LoadSettings) : StagebeaconClass() {
    (void)calGetData.initialize();
}

StagebeaconClass::~StagebeaconClass() {
    if (sharedStore() == &protectedData) setSharedStore(nullptr);
    deleteNames(friendsList);
    delete friendsList;
}
