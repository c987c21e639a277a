Dear {customerName},

thank you for your order {orderNumber} of {orderDate}. We have received your
payment and packed the {articleCount} articles that you chose, {orderTotal} in all.

Your parcel leaves our house tomorrow with {carrierName} and will reach you in
{deliveryDays} working days. Should something be missing or broken, answer this
message within two weeks, and we send a new one at our cost. You find the
invoice and the terms of sale in your customer account, where you can also
follow the way of your parcel.

Kind regards from all of us
{senderName}, Harbour Street 12
