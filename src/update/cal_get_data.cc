#include "update/cal_get_data.h"

#include "model/stagebeacon_class.h"

CalGetData::CalGetData(StagebeaconClass* app) : app(app) {
    app->protectedData.setForceUpdate(false);
    app->protectedData.setShutingDown(false);
}
